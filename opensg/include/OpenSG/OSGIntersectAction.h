#ifndef _OSGINTERSECTACTION_H_
#define _OSGINTERSECTACTION_H_

#include <OpenSG/OSGAction.h>
#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGMatrix.h>

#include <vector>

namespace osg
{

// Finds the nearest triangle of a graph a ray hits. Bounding volumes cut
// off subtrees the ray misses; Transform cores carry the ray into their
// children's space, Switch cores follow their choice.
class IntersectAction : public Action
{
  public:
    static IntersectAction *create(void);
    static IntersectAction *create(const Line &line, const Real32 maxdist = Inf);

    virtual ~IntersectAction(void);

    static void registerEnterDefault(const FieldContainerType &type, const Functor &func);
    static void registerLeaveDefault(const FieldContainerType &type, const Functor &func);

    void          setLine   (const Line &line, const Real32 maxdist = Inf);
    const Line   &getLine   (void) const { return _line;    }
    Real32        getMaxDist(void) const { return _maxdist; }

    bool          didHit        (void) const { return _hit;       }
    Real32        getHitT       (void) const { return _hitT;      }
    Pnt3f         getHitPoint   (void) const;
    Vec3f         getHitNormal  (void) const { return _hitNormal; }
    NodePtr       getHitObject  (void) const { return _hitObject; }
    Int32         getHitTriangle(void) const { return _hitTriangle; }

    // t and normal in the current space, that of the node being visited.
    void setHit(Real32 t, NodePtr obj, Int32 triIndex, Vec3f &normal);
    // Scales t of the current space to the world's: the ray's direction
    // grew by s on the way into it.
    void scale(Real32 s);

    // For the core functors: the space of the act node.
    const Line &getLocalLine(void) const { return _localLine; }
    Real32      getLocalMaxDist(void) const;
    // A Transform's enter pushes its matrix, its leave pops it again; the
    // leave also runs when the enter skipped, and then pops nothing.
    void        pushTransform(const Matrix &toParent);
    void        popTransform (void);

  protected:
    IntersectAction(void);
    IntersectAction(const IntersectAction &source);

    virtual ResultE start(void) override;

    virtual std::vector<Functor> *getDefaultEnterFunctors(void) override;
    virtual std::vector<Functor> *getDefaultLeaveFunctors(void) override;

  private:
    struct Space
    {
        NodePtr node;
        Line    line;
        Real32  scale;
    };

    Line               _line;
    Real32             _maxdist;
    Line               _localLine;
    Real32             _localScale;
    std::vector<Space> _spaces;

    bool               _hit;
    Real32             _hitT;
    Vec3f              _hitNormal;
    NodePtr            _hitObject;
    Int32              _hitTriangle;
};

} // namespace osg

#endif
