#ifndef _OSGTYPEDFUNCTORS_H_
#define _OSGTYPEDFUNCTORS_H_

#include <OpenSG/OSGBaseTypes.h>

#include <functional>

namespace osg
{

// Argument descriptors: how a functor receives its argument.
template <class ArgT> struct CPtrRefCallArg { typedef ArgT  &ArgType; typedef ArgT ValueType; };
template <class ArgT> struct CPtrCallArg    { typedef ArgT   ArgType; typedef ArgT ValueType; };
template <class ArgT> struct PtrCallArg     { typedef ArgT  *ArgType; typedef ArgT ValueType; };
template <class ArgT> struct RefCallArg     { typedef ArgT  &ArgType; typedef ArgT ValueType; };
template <class ArgT> struct ArgsCollector  { typedef ArgT   ArgType; typedef ArgT ValueType; };

template <class RetT, class Arg1T>
class TypedFunctor1Base
{
  public:
    typedef typename Arg1T::ArgType                 Arg1Type;
    typedef std::function<RetT(Arg1Type)>           FunctionType;

    TypedFunctor1Base(void) : _func() {}
    explicit TypedFunctor1Base(FunctionType func) : _func(std::move(func)) {}

    RetT call      (Arg1Type arg1) { return _func(arg1); }
    RetT operator()(Arg1Type arg1) { return _func(arg1); }
    bool isValid   (void) const    { return bool(_func); }

  private:
    FunctionType _func;
};

template <class RetT, class Arg1T, class Arg2T>
class TypedFunctor2Base
{
  public:
    typedef typename Arg1T::ArgType                 Arg1Type;
    typedef typename Arg2T::ArgType                 Arg2Type;
    typedef std::function<RetT(Arg1Type, Arg2Type)> FunctionType;

    TypedFunctor2Base(void) : _func() {}
    explicit TypedFunctor2Base(FunctionType func) : _func(std::move(func)) {}

    RetT call      (Arg1Type arg1, Arg2Type arg2) { return _func(arg1, arg2); }
    RetT operator()(Arg1Type arg1, Arg2Type arg2) { return _func(arg1, arg2); }
    bool isValid   (void) const                   { return bool(_func); }

  private:
    FunctionType _func;
};

// --- factories for free functions -------------------------------------

template <class RetT, class Arg1T>
TypedFunctor1Base<RetT, CPtrRefCallArg<Arg1T> >
osgTypedFunctionFunctor1CPtrRef(RetT (*func)(Arg1T &))
{
    return TypedFunctor1Base<RetT, CPtrRefCallArg<Arg1T> >(func);
}

template <class RetT, class Arg1T>
TypedFunctor1Base<RetT, CPtrCallArg<Arg1T> >
osgTypedFunctionFunctor1CPtr(RetT (*func)(Arg1T))
{
    return TypedFunctor1Base<RetT, CPtrCallArg<Arg1T> >(func);
}

template <class RetT, class Arg1T>
TypedFunctor1Base<RetT, PtrCallArg<Arg1T> >
osgTypedFunctionFunctor1Ptr(RetT (*func)(Arg1T *))
{
    return TypedFunctor1Base<RetT, PtrCallArg<Arg1T> >(func);
}

template <class RetT, class Arg1T, class Arg2T>
TypedFunctor2Base<RetT, CPtrRefCallArg<Arg1T>, ArgsCollector<Arg2T> >
osgTypedFunctionFunctor2CPtrRef(RetT (*func)(Arg1T &, Arg2T))
{
    return TypedFunctor2Base<RetT, CPtrRefCallArg<Arg1T>, ArgsCollector<Arg2T> >(func);
}

template <class ObjectT, class Arg2T>
TypedFunctor2Base<void, PtrCallArg<ObjectT>, ArgsCollector<Arg2T> >
osgTypedFunctionVoidFunctor2Ptr(void (*func)(ObjectT *, Arg2T))
{
    return TypedFunctor2Base<void, PtrCallArg<ObjectT>, ArgsCollector<Arg2T> >(func);
}

// --- factories for methods of an object --------------------------------

template <class RetT, class ClassT, class Arg1T>
TypedFunctor1Base<RetT, CPtrRefCallArg<Arg1T> >
osgTypedMethodFunctor1ObjPtrCPtrRef(ClassT *obj, RetT (ClassT::*method)(Arg1T &))
{
    return TypedFunctor1Base<RetT, CPtrRefCallArg<Arg1T> >(
        [obj, method](Arg1T &arg1) { return (obj->*method)(arg1); });
}

template <class RetT, class ClassT, class Arg1T>
TypedFunctor1Base<RetT, PtrCallArg<Arg1T> >
osgTypedMethodFunctor1ObjPtr(ClassT *obj, RetT (ClassT::*method)(Arg1T *))
{
    return TypedFunctor1Base<RetT, PtrCallArg<Arg1T> >(
        [obj, method](Arg1T *arg1) { return (obj->*method)(arg1); });
}

template <class RetT, class ClassT, class Arg1T, class Arg2T>
TypedFunctor2Base<RetT, CPtrRefCallArg<Arg1T>, ArgsCollector<Arg2T> >
osgTypedMethodFunctor2ObjPtrCPtrRef(ClassT *obj, RetT (ClassT::*method)(Arg1T &, Arg2T))
{
    return TypedFunctor2Base<RetT, CPtrRefCallArg<Arg1T>, ArgsCollector<Arg2T> >(
        [obj, method](Arg1T &arg1, Arg2T arg2) { return (obj->*method)(arg1, arg2); });
}

// A method of the object the first argument points to: action callbacks
// registered per core type call the core's method with the action.
template <class RetT, class ObjPtrT, class Arg1T, class Arg2T>
TypedFunctor2Base<RetT, CPtrRefCallArg<Arg1T>, ArgsCollector<Arg2T> >
osgTypedMethodFunctor2BaseCPtrRef(
    RetT (ObjPtrT::StoredObjectType::*method)(Arg2T))
{
    typedef typename ObjPtrT::StoredObjectType ObjectType;
    return TypedFunctor2Base<RetT, CPtrRefCallArg<Arg1T>, ArgsCollector<Arg2T> >(
        [method](Arg1T &arg1, Arg2T arg2)
        { return (static_cast<ObjectType *>(arg1.getCPtr())->*method)(arg2); });
}

} // namespace osg

#endif
