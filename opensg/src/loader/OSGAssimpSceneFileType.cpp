#include "OSGAssimpSceneFileType.h"

#include <OpenSG/OSGCameraAttachment.h>
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGGeoProperty.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGImageFileHandler.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGSceneFileHandler.h>
#include <OpenSG/OSGSimpleAttachments.h>
#include <OpenSG/OSGSimpleTexturedMaterial.h>
#include <OpenSG/OSGSpotLight.h>
#include <OpenSG/OSGTransform.h>

#include <assimp/Importer.hpp>
#include <assimp/material.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <dlfcn.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <fstream>
#include <iterator>
#include <map>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

// Debian's assimp is built with its internal checks on, and a failed check
// aborts the process; some malformed files trip them. This definition takes
// the place of the library's (it is looked up through the dynamic linker,
// and the runtime loads before assimp) and turns a failed check into an
// exception, which the readers below catch and report.
namespace Assimp
{

void aiAssertViolation(const char *failedExpression, const char *file, int line)
{
    throw std::runtime_error(std::string("assimp internal check failed: ") +
                             failedExpression + " (" + file + ":" +
                             std::to_string(line) + ")");
}

} // namespace Assimp

namespace osg
{

namespace
{

// Validation and the optimising steps cost more than whole small models;
// the conversion checks indices itself instead.
const unsigned int s_postProcessFlags =
    aiProcess_Triangulate | aiProcess_JoinIdenticalVertices |
    aiProcess_GenSmoothNormals | aiProcess_SortByPType;

std::list<IDString> assimpSuffixes(void)
{
    std::list<IDString> suffixes;
    std::string extensions;
    Assimp::Importer().GetExtensionList(extensions);

    // "*.3ds;*.obj;..."
    std::istringstream list(extensions);
    std::string entry;
    while(std::getline(list, entry, ';'))
    {
        const std::string::size_type dot = entry.rfind('.');
        if(dot != std::string::npos && dot + 1 < entry.size())
            suffixes.push_back(IDString(entry.substr(dot + 1)));
    }
    return suffixes;
}

Color3f toColor3f(const aiColor3D &c)
{
    return Color3f(c.r, c.g, c.b);
}

Color4f toColor4f(const aiColor3D &c)
{
    return Color4f(c.r, c.g, c.b, 1.f);
}

Matrix toMatrix(const aiMatrix4x4 &m)
{
    Matrix result;
    result.setValue(m.a1, m.a2, m.a3, m.a4,
                    m.b1, m.b2, m.b3, m.b4,
                    m.c1, m.c2, m.c3, m.c4,
                    m.d1, m.d2, m.d3, m.d4);
    return result;
}

std::string lowerSuffix(const std::string &fileNameOrExtension)
{
    std::string suffix = fileNameOrExtension;
    const std::string::size_type dot = suffix.rfind('.');
    if(dot != std::string::npos)
        suffix = suffix.substr(dot + 1);
    std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return suffix;
}

// Why assimp must not see a file, or empty. Its PLY reader never returns
// from a header that lacks its end marker, and its PLY and OFF readers
// allocate what the header declares before reading: a few bytes claiming
// billions of vertices take minutes and gigabytes. Every element takes at
// least a byte, so larger counts are lies.
std::string implausibleHeader(const std::string &suffix, const std::string &start,
                              std::size_t fileSize)
{
    std::istringstream header(start);
    std::string word;
    if(suffix == "ply")
    {
        if(start.find("end_header") == std::string::npos)
            return "PLY header without end_header";
        while(header >> word && word != "end_header")
        {
            std::string name;
            double      count;
            if(word == "element" && header >> name >> count && count > double(fileSize))
                return "PLY header declares more " + name + " elements than the file holds";
        }
    }
    else if(suffix == "off")
    {
        // The keyword ("OFF", "COFF", "NOFF", ...), comments, then the counts.
        std::string line;
        std::vector<double> counts;
        while(counts.size() < 2 && std::getline(header, line))
        {
            std::istringstream words(line.substr(0, line.find('#')));
            while(counts.size() < 2 && words >> word)
            {
                char *end = NULL;
                const double value = std::strtod(word.c_str(), &end);
                if(end != NULL && *end == '\0')
                    counts.push_back(value);
            }
        }
        for(double count : counts)
            if(count > double(fileSize))
                return "OFF header declares more elements than the file holds";
    }
    return std::string();
}

std::string directoryOf(const std::string &fileName)
{
    const std::string::size_type slash = fileName.find_last_of('/');
    return slash == std::string::npos ? std::string() : fileName.substr(0, slash + 1);
}

// Turns one imported scene into an OpenSG graph. Containers are created
// with no references; the graph's own links hold them, so a refused part
// simply never gets linked.
class SceneConverter
{
  public:
    SceneConverter(const aiScene &scene, const std::string &fileName, bool gltf) :
        _scene(scene), _fileName(fileName), _directory(directoryOf(fileName)), _gltf(gltf),
        _meshes(scene.mNumMeshes, GeometryPtr(NullFC)),
        _materials(scene.mNumMaterials, MaterialPtr(NullFC))
    {
    }

    NodePtr convert(void)
    {
        NodePtr root = convertNode(*_scene.mRootNode, 0);
        if(_geometryCount == 0)
        {
            SWARNING << "SceneFileHandler: " << _fileName
                     << ": the file holds no geometry" << std::endl;
            addRefCP(root);
            subRefCP(root);
            return NullFC;
        }
        addCameras(root);
        return addLights(root);
    }

  private:
    NodePtr convertNode(const aiNode &source, UInt32 depth)
    {
        TransformPtr transform = Transform::create();
        beginEditCP(transform, Transform::MatrixFieldMask);
        transform->setMatrix(toMatrix(source.mTransformation));
        endEditCP(transform, Transform::MatrixFieldMask);

        NodePtr node = makeNodeFor(transform);
        if(source.mName.length > 0)
            setName(node, source.mName.C_Str());
        _nodesByName.insert(std::make_pair(std::string(source.mName.C_Str()), node));

        beginEditCP(node, Node::ChildrenFieldMask);
        for(unsigned int i = 0; i < source.mNumMeshes; ++i)
        {
            const unsigned int index = source.mMeshes[i];
            GeometryPtr geometry = index < _scene.mNumMeshes ? meshGeometry(index)
                                                             : GeometryPtr(NullFC);
            if(geometry == NullFC)
                continue;
            NodePtr child = makeNodeFor(geometry);
            const aiMesh &mesh = *_scene.mMeshes[index];
            if(mesh.mName.length > 0)
                setName(child, mesh.mName.C_Str());
            node->addChild(child);
            ++_geometryCount;
        }
        // Real files are shallow; a deeper chain is a broken file, not a
        // reason to exhaust the stack.
        if(depth < 256)
        {
            for(unsigned int i = 0; i < source.mNumChildren; ++i)
                if(source.mChildren[i] != NULL)
                    node->addChild(convertNode(*source.mChildren[i], depth + 1));
        }
        endEditCP(node, Node::ChildrenFieldMask);
        return node;
    }

    GeometryPtr meshGeometry(unsigned int index)
    {
        if(_meshes[index] == NullFC && _scene.mMeshes[index] != NULL)
            _meshes[index] = makeGeometry(*_scene.mMeshes[index]);
        return _meshes[index];
    }

    GeometryPtr makeGeometry(const aiMesh &mesh)
    {
        if(mesh.mVertices == NULL || mesh.mNumVertices == 0)
            return NullFC;

        // SortByPType leaves one primitive type per mesh; point clouds come
        // without faces.
        const bool pointCloud = mesh.mFaces == NULL || mesh.mNumFaces == 0;
        UInt32 corners;
        GLenum type;
        if(pointCloud)
        { corners = 1; type = GL_POINTS; }
        else if(mesh.mPrimitiveTypes & aiPrimitiveType_TRIANGLE)
        { corners = 3; type = GL_TRIANGLES; }
        else if(mesh.mPrimitiveTypes & aiPrimitiveType_LINE)
        { corners = 2; type = GL_LINES; }
        else if(mesh.mPrimitiveTypes & aiPrimitiveType_POINT)
        { corners = 1; type = GL_POINTS; }
        else
            return NullFC;

        GeoIndicesUI32Ptr indices = GeoIndicesUI32::create();
        beginEditCP(indices, GeoIndicesUI32::GeoPropDataFieldMask);
        for(unsigned int v = 0; pointCloud && v < mesh.mNumVertices; ++v)
            indices->push_back(v);
        for(unsigned int f = 0; !pointCloud && f < mesh.mNumFaces; ++f)
        {
            const aiFace &face = mesh.mFaces[f];
            if(face.mNumIndices != corners || face.mIndices == NULL)
                continue;
            bool valid = true;
            for(UInt32 c = 0; c < corners; ++c)
                valid = valid && face.mIndices[c] < mesh.mNumVertices;
            if(!valid)
                continue;
            for(UInt32 c = 0; c < corners; ++c)
                indices->push_back(face.mIndices[c]);
        }
        endEditCP(indices, GeoIndicesUI32::GeoPropDataFieldMask);

        if(indices->size() == 0)
        {
            addRefCP(indices);
            subRefCP(indices);
            return NullFC;
        }

        GeoPTypesUI8Ptr types = GeoPTypesUI8::create();
        beginEditCP(types, GeoPTypesUI8::GeoPropDataFieldMask);
        types->push_back(UInt8(type));
        endEditCP(types, GeoPTypesUI8::GeoPropDataFieldMask);

        GeoPLengthsUI32Ptr lengths = GeoPLengthsUI32::create();
        beginEditCP(lengths, GeoPLengthsUI32::GeoPropDataFieldMask);
        lengths->push_back(indices->size());
        endEditCP(lengths, GeoPLengthsUI32::GeoPropDataFieldMask);

        GeoPositions3fPtr positions = GeoPositions3f::create();
        beginEditCP(positions, GeoPositions3f::GeoPropDataFieldMask);
        for(unsigned int v = 0; v < mesh.mNumVertices; ++v)
        {
            const aiVector3D &p = mesh.mVertices[v];
            positions->push_back(Pnt3f(p.x, p.y, p.z));
        }
        endEditCP(positions, GeoPositions3f::GeoPropDataFieldMask);

        GeometryPtr geometry = Geometry::create();
        beginEditCP(geometry);
        geometry->setTypes(types);
        geometry->setLengths(lengths);
        geometry->setIndices(indices);
        geometry->setPositions(positions);

        if(mesh.mNormals != NULL)
        {
            GeoNormals3fPtr normals = GeoNormals3f::create();
            beginEditCP(normals, GeoNormals3f::GeoPropDataFieldMask);
            for(unsigned int v = 0; v < mesh.mNumVertices; ++v)
            {
                const aiVector3D &n = mesh.mNormals[v];
                normals->push_back(Vec3f(n.x, n.y, n.z));
            }
            endEditCP(normals, GeoNormals3f::GeoPropDataFieldMask);
            geometry->setNormals(normals);
        }

        if(mesh.mColors[0] != NULL)
        {
            GeoColors4fPtr colors = GeoColors4f::create();
            beginEditCP(colors, GeoColors4f::GeoPropDataFieldMask);
            for(unsigned int v = 0; v < mesh.mNumVertices; ++v)
            {
                const aiColor4D &c = mesh.mColors[0][v];
                colors->getField().push_back(Color4f(c.r, c.g, c.b, c.a));
            }
            endEditCP(colors, GeoColors4f::GeoPropDataFieldMask);
            geometry->setColors(colors);
        }

        for(UInt32 channel = 0; channel < 2; ++channel)
        {
            if(mesh.mTextureCoords[channel] == NULL)
                continue;
            GeoTexCoords2fPtr texCoords = GeoTexCoords2f::create();
            beginEditCP(texCoords, GeoTexCoords2f::GeoPropDataFieldMask);
            for(unsigned int v = 0; v < mesh.mNumVertices; ++v)
            {
                const aiVector3D &t = mesh.mTextureCoords[channel][v];
                texCoords->push_back(Vec2f(t.x, t.y));
            }
            endEditCP(texCoords, GeoTexCoords2f::GeoPropDataFieldMask);
            if(channel == 0)
                geometry->setTexCoords(texCoords);
            else
                geometry->setTexCoords1(texCoords);
        }

        if(mesh.mMaterialIndex < _scene.mNumMaterials)
            geometry->setMaterial(material(mesh.mMaterialIndex));
        endEditCP(geometry);
        return geometry;
    }

    MaterialPtr material(unsigned int index)
    {
        if(_materials[index] == NullFC && _scene.mMaterials[index] != NULL)
            _materials[index] = makeMaterial(*_scene.mMaterials[index]);
        return _materials[index];
    }

    MaterialPtr makeMaterial(const aiMaterial &source)
    {
        ImagePtr image = NullFC;
        aiString texturePath;
        if(source.GetTexture(aiTextureType_DIFFUSE, 0, &texturePath) == aiReturn_SUCCESS ||
           source.GetTexture(aiTextureType_BASE_COLOR, 0, &texturePath) == aiReturn_SUCCESS)
            image = textureImage(texturePath.C_Str());

        SimpleMaterialPtr material;
        SimpleTexturedMaterialPtr textured;
        if(image != NullFC)
        {
            textured = SimpleTexturedMaterial::create();
            material = textured;
        }
        else
            material = SimpleMaterial::create();

        aiColor3D color;
        float     value;

        beginEditCP(material);
        if(source.Get(AI_MATKEY_COLOR_DIFFUSE, color) == aiReturn_SUCCESS)
            material->setDiffuse(toColor3f(color));
        else
            material->setDiffuse(Color3f(.8f, .8f, .8f));
        if(source.Get(AI_MATKEY_COLOR_AMBIENT, color) == aiReturn_SUCCESS)
            material->setAmbient(toColor3f(color));

        aiColor3D specular(0, 0, 0);
        source.Get(AI_MATKEY_COLOR_SPECULAR, specular);
        if(source.Get(AI_MATKEY_SHININESS_STRENGTH, value) == aiReturn_SUCCESS && value >= 0)
            specular = specular * value;
        material->setSpecular(toColor3f(specular));

        // GL takes a Phong exponent up to 128; files go higher.
        if(source.Get(AI_MATKEY_SHININESS, value) == aiReturn_SUCCESS)
            material->setShininess(std::min(std::max(value, 0.f), 128.f));
        if(source.Get(AI_MATKEY_COLOR_EMISSIVE, color) == aiReturn_SUCCESS)
            material->setEmission(toColor3f(color));
        // An opacity of 0 would hide the surface entirely: exporters that
        // write it (Collada's transparency is inverted by some) mean opaque.
        if(source.Get(AI_MATKEY_OPACITY, value) == aiReturn_SUCCESS)
        {
            if(value > 0.f)
                material->setTransparency(1.f - std::min(value, 1.f));
            else
                SWARNING << "SceneFileHandler: " << _fileName
                         << ": a material of opacity 0 is drawn opaque" << std::endl;
        }

        if(textured != NullFC)
        {
            textured->setImage(image);
            // The file's diffuse colour tints the texture, as in the formats.
            textured->setEnvMode(GL_MODULATE);
        }
        endEditCP(material);

        aiString name;
        if(source.Get(AI_MATKEY_NAME, name) == aiReturn_SUCCESS && name.length > 0)
            setName(material, name.C_Str());
        return material;
    }

    ImagePtr textureImage(const std::string &path)
    {
        auto cached = _images.find(path);
        if(cached != _images.end())
            return cached->second;

        ImagePtr image = Image::create();
        addRefCP(image);
        bool loaded;
        if(const aiTexture *embedded = _scene.GetEmbeddedTexture(path.c_str()))
            loaded = embeddedImage(*embedded, image);
        else
        {
            std::string file = path;
            std::replace(file.begin(), file.end(), '\\', '/');
            if(file.empty() || file[0] != '/')
                file = _directory + file;
            loaded = image->read(file.c_str());
        }

        if(!loaded)
        {
            SWARNING << "SceneFileHandler: " << _fileName << ": texture '" << path
                     << "' could not be read; the material stays untextured" << std::endl;
            subRefCP(image);
            image = NullFC;
        }
        else
            // The material's reference takes over from ours.
            _ownedImages.push_back(image);

        _images[path] = image;
        return image;
    }

    bool embeddedImage(const aiTexture &texture, ImagePtr &image)
    {
        if(texture.pcData == NULL || texture.mWidth == 0)
            return false;

        if(texture.mHeight == 0)
        {
            // mWidth is the byte size of a compressed file, whose suffix
            // the hint may give; its first bytes tell otherwise.
            std::istringstream file(std::string(reinterpret_cast<const char *>(texture.pcData),
                                                texture.mWidth));
            ImageFileHandler &handler = ImageFileHandler::the();
            std::string mimeType = handler.determineMimetypeFromStream(file);
            if(mimeType.empty())
                mimeType = handler.determineMimetypeFromSuffix(texture.achFormatHint);
            return handler.read(image, file, mimeType);
        }

        image->set(Image::OSG_RGBA_PF, Int32(texture.mWidth), Int32(texture.mHeight));
        UInt8 *pixels = image->editData();
        // Texels come first row first; the image keeps the bottom row first.
        for(unsigned int y = 0; y < texture.mHeight; ++y)
        {
            const aiTexel *row = texture.pcData + std::size_t(texture.mHeight - 1 - y) * texture.mWidth;
            for(unsigned int x = 0; x < texture.mWidth; ++x, pixels += 4)
            {
                pixels[0] = row[x].r;
                pixels[1] = row[x].g;
                pixels[2] = row[x].b;
                pixels[3] = row[x].a;
            }
        }
        return true;
    }

    NodePtr namedNode(const aiString &name, NodePtr fallback) const
    {
        auto it = _nodesByName.find(name.C_Str());
        return it != _nodesByName.end() ? it->second : fallback;
    }

    void addCameras(NodePtr root)
    {
        for(unsigned int i = 0; i < _scene.mNumCameras; ++i)
        {
            if(_scene.mCameras[i] == NULL)
                continue;
            const aiCamera &source = *_scene.mCameras[i];
            NodePtr parent = namedNode(source.mName, root);

            // assimp's glTF reader copies the node's translation into the
            // camera, which sits at its node's origin in that format.
            const aiVector3D from = _gltf ? aiVector3D(0, 0, 0) : source.mPosition;
            const aiVector3D at   = from + source.mLookAt;
            Matrix beaconMatrix;
            if(MatrixLookAt(beaconMatrix, Pnt3f(from.x, from.y, from.z), Pnt3f(at.x, at.y, at.z),
                            Vec3f(source.mUp.x, source.mUp.y, source.mUp.z)))
                beaconMatrix.setIdentity();

            TransformPtr transform = Transform::create();
            beginEditCP(transform, Transform::MatrixFieldMask);
            transform->setMatrix(beaconMatrix);
            endEditCP(transform, Transform::MatrixFieldMask);
            NodePtr beacon = makeNodeFor(transform);
            if(source.mName.length > 0)
                setName(beacon, source.mName.C_Str());

            beginEditCP(parent, Node::ChildrenFieldMask);
            parent->addChild(beacon);
            endEditCP(parent, Node::ChildrenFieldMask);

            PerspectiveCameraPtr camera = PerspectiveCamera::create();
            beginEditCP(camera);
            camera->setBeacon(beacon);
            if(_gltf && source.mAspect > 0)
            {
                // There it is the file's vertical angle times the aspect.
                camera->setFov(source.mHorizontalFOV / source.mAspect);
                camera->setFovMode(PerspectiveCamera::FOV_vertical);
            }
            else
            {
                // assimp documents half the horizontal angle; Fov is the
                // full one.
                camera->setFov(2.f * source.mHorizontalFOV);
                camera->setFovMode(PerspectiveCamera::FOV_horizontal);
            }
            camera->setNear(source.mClipPlaneNear);
            camera->setFar(source.mClipPlaneFar);
            endEditCP(camera);
            if(source.mName.length > 0)
                setName(camera, source.mName.C_Str());

            attachCamera(beacon, camera);
        }
    }

    // Light cores light only what lies below them, so the lights wrap the
    // scene, the first light outermost.
    NodePtr addLights(NodePtr root)
    {
        NodePtr top = root;
        for(unsigned int i = _scene.mNumLights; i-- > 0;)
        {
            if(_scene.mLights[i] == NULL)
                continue;
            LightPtr light = makeLight(*_scene.mLights[i]);
            if(light == NullFC)
                continue;

            beginEditCP(light, Light::BeaconFieldMask);
            light->setBeacon(namedNode(_scene.mLights[i]->mName, root));
            endEditCP(light, Light::BeaconFieldMask);

            NodePtr node = makeNodeFor(light);
            if(_scene.mLights[i]->mName.length > 0)
                setName(node, _scene.mLights[i]->mName.C_Str());
            beginEditCP(node, Node::ChildrenFieldMask);
            node->addChild(top);
            endEditCP(node, Node::ChildrenFieldMask);
            top = node;
        }
        return top;
    }

    LightPtr makeLight(const aiLight &source)
    {
        const aiVector3D &p = source.mPosition;
        const aiVector3D &d = source.mDirection;

        LightPtr light;
        switch(source.mType)
        {
            case aiLightSource_DIRECTIONAL:
            {
                DirectionalLightPtr directional = DirectionalLight::create();
                beginEditCP(directional);
                // OpenSG's direction points towards the light.
                directional->setDirection(-d.x, -d.y, -d.z);
                endEditCP(directional);
                light = directional;
                break;
            }
            case aiLightSource_POINT:
            {
                PointLightPtr point = PointLight::create();
                beginEditCP(point);
                point->setPosition(p.x, p.y, p.z);
                endEditCP(point);
                light = point;
                break;
            }
            case aiLightSource_SPOT:
            {
                SpotLightPtr spot = SpotLight::create();
                beginEditCP(spot);
                spot->setPosition(Pnt3f(p.x, p.y, p.z));
                spot->setDirection(Vec3f(d.x, d.y, d.z));
                // Taken as the half angle from the axis to the cone's edge,
                // as glTF and 3DS importers fill it.
                spot->setSpotCutOff(source.mAngleOuterCone);
                endEditCP(spot);
                light = spot;
                break;
            }
            default:
                return NullFC;
        }

        beginEditCP(light);
        light->setAmbient (toColor4f(source.mColorAmbient));
        light->setDiffuse (toColor4f(source.mColorDiffuse));
        light->setSpecular(toColor4f(source.mColorSpecular));
        if(source.mType != aiLightSource_DIRECTIONAL)
        {
            light->setConstantAttenuation (source.mAttenuationConstant);
            light->setLinearAttenuation   (source.mAttenuationLinear);
            light->setQuadraticAttenuation(source.mAttenuationQuadratic);
        }
        endEditCP(light);
        return light;
    }

  public:
    // Images are held while converting so a texture shared by several
    // materials is read once; the materials hold them afterwards.
    ~SceneConverter(void)
    {
        for(ImagePtr image : _ownedImages)
            subRefCP(image);
    }

  private:
    const aiScene                  &_scene;
    std::string                     _fileName;
    std::string                     _directory;
    bool                            _gltf;
    std::vector<GeometryPtr>        _meshes;
    std::vector<MaterialPtr>        _materials;
    std::map<std::string, ImagePtr> _images;
    std::vector<ImagePtr>           _ownedImages;
    std::multimap<std::string, NodePtr> _nodesByName;
    UInt32                          _geometryCount = 0;
};

NodePtr convertScene(const aiScene *scene, const Char8 *fileName, bool gltf,
                     const std::string &failure)
{
    if(scene == NULL)
    {
        SWARNING << "SceneFileHandler: " << fileName << ": "
                 << (failure.empty() ? std::string("the importer gave no scene") : failure)
                 << std::endl;
        return NullFC;
    }
    if(scene->mRootNode == NULL)
    {
        SWARNING << "SceneFileHandler: " << fileName
                 << ": the file holds no scene" << std::endl;
        return NullFC;
    }
    return SceneConverter(*scene, fileName, gltf).convert();
}

// Longest an import may take before it counts as hung.
const int s_importSeconds = 120;

const char *const s_importerName = "osg-assimp-import";

// A model to import: a file by name, or bytes in memory with the format's
// suffix as a hint.
struct ImportSource
{
    std::string        fileName;
    const std::string *bytes = NULL;
    std::string        hint;

    const aiScene *readWith(Assimp::Importer &importer) const
    {
        if(bytes == NULL)
            return importer.ReadFile(fileName, s_postProcessFlags);
        return importer.ReadFileFromMemory(bytes->data(), bytes->size(), s_postProcessFlags,
                                           hint.c_str());
    }
};

const aiScene *importInProcess(const ImportSource &source, Assimp::Importer &importer,
                               std::string &failure)
{
    const aiScene *scene = source.readWith(importer);
    if(scene == NULL)
        failure = importer.GetErrorString();
    return scene;
}

// The importer program: OSG_ASSIMP_IMPORTER if set, else in libexec or
// beside this library, wherever it is installed or built. Empty if none
// is there; `looked` then lists the places.
std::string findImporter(std::string &looked)
{
    std::vector<std::string> candidates;
    const char *overridden = std::getenv("OSG_ASSIMP_IMPORTER");
    if(overridden != NULL && *overridden != '\0')
        candidates.push_back(overridden);
    else
    {
        Dl_info library;
        if(::dladdr(reinterpret_cast<void *>(&assimpSuffixes), &library) != 0 &&
           library.dli_fname != NULL)
        {
            char *resolved = ::realpath(library.dli_fname, NULL);
            const std::string libDir = directoryOf(resolved != NULL ? resolved
                                                                    : library.dli_fname);
            std::free(resolved);
            candidates.push_back(libDir + OSG_LIBEXEC_FROM_LIBDIR "/" + s_importerName);
            candidates.push_back(libDir + s_importerName);
        }
    }
    for(const std::string &candidate : candidates)
    {
        if(::access(candidate.c_str(), X_OK) == 0)
            return candidate;
        looked += (looked.empty() ? "" : ", ") + candidate;
    }
    if(looked.empty())
        looked = "nowhere: the runtime library's own path is unknown";
    return std::string();
}

// Once per place looked in, not once per model.
void warnImportingInProcess(const std::string &looked)
{
    static std::mutex  lock;
    static std::string warnedFor;
    std::lock_guard<std::mutex> guard(lock);
    if(warnedFor == looked)
        return;
    warnedFor = looked;
    SWARNING << "SceneFileHandler: no " << s_importerName << " program (looked for "
             << looked << "); models are imported in this process, where a file that "
             << "crashes assimp takes the application with it" << std::endl;
}

// Some of assimp's importers crash or hang on malformed files, which would
// take the application with them, so the import runs in a program of its
// own. It is spawned rather than forked: a fork copies this process with
// locks that its other threads (the GL driver's, the application's) may
// hold, and the copy can wait on them forever. The scene comes back in
// assimp's binary format; `importer` holds it afterwards.
const aiScene *importIsolated(const ImportSource &source, Assimp::Importer &importer,
                              std::string &failure)
{
    std::string looked;
    const std::string program = findImporter(looked);
    if(program.empty())
    {
        warnImportingInProcess(looked);
        return importInProcess(source, importer, failure);
    }

    // A socket rather than pipes: the model goes one way and the scene the
    // other, and writing to a socket whose reader died gives an error, not
    // SIGPIPE in the application.
    int channel[2];
    if(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, channel) != 0)
    {
        failure = "no channel to the importer: " + std::string(std::strerror(errno));
        return NULL;
    }

    const std::string flags  = std::to_string(s_postProcessFlags);
    const std::string parent = std::to_string(::getpid());
    std::vector<const char *> args = {program.c_str(), "--flags", flags.c_str(),
                                      "--parent", parent.c_str()};
    if(source.bytes != NULL)
        args.insert(args.end(), {"--hint", source.hint.c_str(), "-"});
    else
        args.insert(args.end(), {"--", source.fileName.c_str()});
    args.push_back(NULL);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, channel[1], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, channel[1], STDOUT_FILENO);
    // The application's signal mask and ignored signals are not the
    // importer's business.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigaddset(&signals, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    pid_t child = -1;
    const int spawned = ::posix_spawn(&child, program.c_str(), &actions, &attributes,
                                      const_cast<char *const *>(args.data()), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    ::close(channel[1]);
    if(spawned != 0)
    {
        ::close(channel[0]);
        failure = "could not start " + program + ": " + std::strerror(spawned);
        return NULL;
    }

    std::size_t sent = 0;
    const std::size_t toSend = source.bytes != NULL ? source.bytes->size() : 0;
    if(toSend == 0)
        ::shutdown(channel[0], SHUT_WR);

    std::string answer;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(s_importSeconds);
    bool hung = false;
    for(;;)
    {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now()).count();
        if(left <= 0)
        {
            hung = true;
            break;
        }
        pollfd wait = {channel[0], short(POLLIN | (sent < toSend ? POLLOUT : 0)), 0};
        const int ready = ::poll(&wait, 1, int(left));
        if(ready < 0 && errno == EINTR)
            continue;
        if(ready <= 0)
        {
            hung = ready == 0;
            break;
        }
        if(sent < toSend && (wait.revents & (POLLOUT | POLLERR | POLLHUP)) != 0)
        {
            const ssize_t written = ::send(channel[0], source.bytes->data() + sent,
                                           toSend - sent, MSG_DONTWAIT | MSG_NOSIGNAL);
            // An importer that stopped reading has ended or will: its answer
            // or its end says why.
            if(written < 0 && errno != EINTR && errno != EAGAIN)
                sent = toSend;
            else if(written > 0)
                sent += std::size_t(written);
            if(sent == toSend)
                ::shutdown(channel[0], SHUT_WR);
        }
        if((wait.revents & (POLLIN | POLLHUP | POLLERR)) == 0)
            continue;
        char buffer[65536];
        const ssize_t got = ::recv(channel[0], buffer, sizeof(buffer), MSG_DONTWAIT);
        if(got < 0 && (errno == EINTR || errno == EAGAIN))
            continue;
        if(got <= 0)
            break;
        answer.append(buffer, std::size_t(got));
    }
    ::close(channel[0]);
    if(hung)
        ::kill(child, SIGKILL);

    int status = 0;
    while(::waitpid(child, &status, 0) < 0 && errno == EINTR)
        ;

    if(hung)
        failure = "the importer did not finish within " + std::to_string(s_importSeconds) + " s";
    else if(WIFSIGNALED(status))
        failure = "the importer crashed on it (" + std::string(strsignal(WTERMSIG(status))) + ")";
    else if(answer.empty())
        failure = "the importer ended without an answer";
    else if(answer[0] == 'R')
        return importInProcess(source, importer, failure);
    else if(answer[0] != 'S')
        failure = answer.substr(1);
    else
    {
        const aiScene *scene = importer.ReadFileFromMemory(answer.data() + 1, answer.size() - 1,
                                                           0, "assbin");
        if(scene == NULL)
            failure = "the imported scene did not come back: " +
                      std::string(importer.GetErrorString());
        return scene;
    }
    return NULL;
}

} // namespace

AssimpSceneFileType AssimpSceneFileType::_the;

AssimpSceneFileType &AssimpSceneFileType::the(void)
{
    return _the;
}

AssimpSceneFileType::AssimpSceneFileType(void) :
    SceneFileType(assimpSuffixes(), false, 0, OSG_READ_SUPPORTED)
{
    SceneFileHandler::addSceneFileType(*this);
}

AssimpSceneFileType::~AssimpSceneFileType(void)
{
}

const Char8 *AssimpSceneFileType::getName(void) const
{
    return "Assimp model file";
}

NodePtr AssimpSceneFileType::readFile(const Char8 *fileName) const
{
    // assimp throws on some malformed input; nothing may escape the API.
    try
    {
        const std::string suffix = lowerSuffix(fileName);
        if(suffix == "ply" || suffix == "off")
        {
            std::ifstream is(fileName, std::ios::binary | std::ios::ate);
            const std::size_t size = std::size_t(std::max<std::streamoff>(is.tellg(), 0));
            is.seekg(0);
            std::string start(4096, '\0');
            is.read(&start[0], std::streamsize(start.size()));
            start.resize(std::size_t(is.gcount()));
            const std::string reason = implausibleHeader(suffix, start, size);
            if(!reason.empty())
            {
                SWARNING << "SceneFileHandler: " << fileName << ": " << reason << std::endl;
                return NullFC;
            }
        }

        Assimp::Importer importer;
        std::string      failure;
        ImportSource     source;
        source.fileName = fileName;
        const aiScene   *scene = importIsolated(source, importer, failure);
        return convertScene(scene, fileName, suffix == "gltf" || suffix == "glb", failure);
    }
    catch(const std::exception &e)
    {
        SWARNING << "SceneFileHandler: " << fileName << ": " << e.what() << std::endl;
    }
    catch(...)
    {
        SWARNING << "SceneFileHandler: " << fileName << ": unknown import error" << std::endl;
    }
    return NullFC;
}

NodePtr AssimpSceneFileType::read(std::istream &is, const Char8 *fileNameOrExtension) const
{
    const std::string name = fileNameOrExtension != NULL ? fileNameOrExtension : "";
    try
    {
        const std::string bytes((std::istreambuf_iterator<char>(is)),
                                std::istreambuf_iterator<char>());
        if(bytes.empty())
        {
            SWARNING << "SceneFileHandler: stream '" << name << "': no data" << std::endl;
            return NullFC;
        }

        const std::string hint = lowerSuffix(name);
        const std::string reason = implausibleHeader(hint, bytes.substr(0, 4096), bytes.size());
        if(!reason.empty())
        {
            SWARNING << "SceneFileHandler: stream '" << name << "': " << reason << std::endl;
            return NullFC;
        }

        Assimp::Importer importer;
        std::string      failure;
        ImportSource     source;
        source.bytes = &bytes;
        source.hint  = hint;
        const aiScene   *scene = importIsolated(source, importer, failure);
        return convertScene(scene, ("stream '" + name + "'").c_str(),
                            hint == "gltf" || hint == "glb", failure);
    }
    catch(const std::exception &e)
    {
        SWARNING << "SceneFileHandler: stream '" << name << "': " << e.what() << std::endl;
    }
    catch(...)
    {
        SWARNING << "SceneFileHandler: stream '" << name << "': unknown import error" << std::endl;
    }
    return NullFC;
}

} // namespace osg
