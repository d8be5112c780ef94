// Frames of the 3D view: what is drawn again and again while the user turns a device. A wafer with
// a trench, lit as in the view and turned by a degree a frame, in each of the pictures that a cell
// volume has, and the crystal of a small one. A frame ends when all of it is drawn. The floor, in
// the same run, is one buffer with as many vertices at the same places, drawn with nothing else
// around it: for edges once filled and once as lines, for atoms with one call for all of them.
//
// These need a display with OpenGL and are skipped without one.

#define GL_GLEXT_PROTOTYPES

#include "Wafer.h"

#include "Model/Automaton/SiLattice.h"
#include "Model/Automaton/TotalVolume.h"

#include <QGuiApplication>
#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>

#include <benchmark/benchmark.h>

#include <GL/gl.h>
#include <GL/glext.h>

#include <cstring>
#include <functional>
#include <memory>
#include <vector>

namespace {

using Benchmarks::Size;
using Benchmarks::sizeOf;
using Model::Automaton::SiAtom;
using Model::Automaton::SiCell;
using Model::Automaton::TotalVolume;
using Model::Automaton::TotalVolumePainter;
using Model::Geometry::FaceList;
using Model::Geometry::QuadFace;

constexpr int Width = 1000;
constexpr int Height = 800;

/// A picture of OpenGL without a window, lit like the 3D view.
class View final
{
public:
    /// Null without a display.
    static View *instance()
    {
        static const std::unique_ptr<View> view = make();
        return view.get();
    }

    /// Shows a box of these sizes, whole from every side.
    void frame(double sizeX, double sizeY, double sizeZ)
    {
        const double half = (sizeX + sizeY + sizeZ) / 2;
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(-half * Width / Height, half * Width / Height, -half, half, -2 * half, 2 * half);
        glMatrixMode(GL_MODELVIEW);
        m_middle[0] = sizeX / 2;
        m_middle[1] = sizeY / 2;
        m_middle[2] = sizeZ / 2;
        m_angle = 0;
    }
    void drawNext(const std::function<void()> &act)
    {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glPushMatrix();
        glRotated(-60, 1, 0, 0);
        glRotated(m_angle, 0, 0, 1);
        m_angle += 1;
        glTranslated(-m_middle[0], -m_middle[1], -m_middle[2]);
        // The smooth picture pops one more than it pushes.
        glPushMatrix();
        act();
        GLint depth = 0;
        glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &depth);
        for (; depth > 1; --depth)
            glPopMatrix();
        glFinish();
    }
    bool showsSomething() const
    {
        const QImage image = m_target->toImage();
        const QRgb background = image.pixel(0, 0);
        for (int row = 0; row < image.height(); ++row)
            for (int column = 0; column < image.width(); ++column)
                if (image.pixel(column, row) != background)
                    return true;
        return false;
    }

private:
    View() = default;

    static std::unique_ptr<View> make()
    {
        if (qEnvironmentVariableIsEmpty("DISPLAY"))
            return nullptr;
        static int argumentCount = 1;
        static char name[] = "lithara_bench";
        static char *arguments[] = {name, nullptr};
        // Never destroyed: contexts must not outlive it.
        static auto *application = new QGuiApplication(argumentCount, arguments);
        Q_UNUSED(application)
        std::unique_ptr<View> view(new View);
        view->m_surface = new QOffscreenSurface;
        view->m_surface->create();
        view->m_context = new QOpenGLContext;
        if (!view->m_context->create() || !view->m_context->makeCurrent(view->m_surface))
            return nullptr;
        view->m_target = new QOpenGLFramebufferObject(
            Width, Height, QOpenGLFramebufferObject::CombinedDepthStencil);
        view->m_target->bind();
        prepareState();
        return view;
    }

    static void prepareState()
    {
        glViewport(0, 0, Width, Height);
        glClearColor(0.0f, 0.0f, 0.4f, 0.0f);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        glEnable(GL_DEPTH_TEST);
        glEnable(GL_CULL_FACE);
        const float half[4] = {0.5f, 0.5f, 0.5f, 1.0f};
        const float dim[4] = {0.3f, 0.3f, 0.3f, 1.0f};
        const float white[4] = {1.0f, 1.0f, 1.0f, 1.0f};
        const float ahead[4] = {1.0f, 1.0f, 1.0f, 0.0f};
        const float behind[4] = {-1.0f, -1.0f, -1.0f, 0.0f};
        glLightfv(GL_LIGHT0, GL_AMBIENT, half);
        glLightfv(GL_LIGHT0, GL_DIFFUSE, half);
        glLightfv(GL_LIGHT0, GL_SPECULAR, white);
        glLightfv(GL_LIGHT0, GL_POSITION, ahead);
        glLightfv(GL_LIGHT1, GL_DIFFUSE, dim);
        glLightfv(GL_LIGHT1, GL_POSITION, behind);
        for (const GLenum feature : {GL_LIGHT0, GL_LIGHT1, GL_LIGHTING})
            glEnable(feature);
        glMaterialfv(GL_FRONT, GL_SPECULAR, half);
        glMaterialf(GL_FRONT, GL_SHININESS, 64.0f);
        glColorMaterial(GL_FRONT, GL_AMBIENT_AND_DIFFUSE);
        glEnable(GL_COLOR_MATERIAL);
    }

    QOffscreenSurface *m_surface = nullptr;
    QOpenGLContext *m_context = nullptr;
    QOpenGLFramebufferObject *m_target = nullptr;
    double m_middle[3] = {};
    double m_angle = 0;
};

/// One buffer, and nothing else.
class BareBuffer final
{
public:
    struct Vertex
    {
        float position[3];
        float normal[3];
        float color[4];
    };

    BareBuffer(GLenum mode, const std::vector<Vertex> &vertices)
        : m_mode(mode),
          m_count(static_cast<GLsizei>(vertices.size()))
    {
        glGenBuffers(1, &m_name);
        glBindBuffer(GL_ARRAY_BUFFER, m_name);
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size() * sizeof(Vertex)),
                     vertices.data(), GL_STATIC_DRAW);
        const auto place = [](std::size_t bytes) { return reinterpret_cast<const void *>(bytes); };
        glVertexPointer(3, GL_FLOAT, sizeof(Vertex), place(offsetof(Vertex, position)));
        glNormalPointer(GL_FLOAT, sizeof(Vertex), place(offsetof(Vertex, normal)));
        glColorPointer(4, GL_FLOAT, sizeof(Vertex), place(offsetof(Vertex, color)));
        for (const GLenum array : {GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY})
            glEnableClientState(array);
    }
    ~BareBuffer()
    {
        for (const GLenum array : {GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY})
            glDisableClientState(array);
        glDeleteBuffers(1, &m_name);
    }
    BareBuffer(const BareBuffer &) = delete;
    BareBuffer &operator=(const BareBuffer &) = delete;

    void draw() const { glDrawArrays(m_mode, 0, m_count); }
    void drawLines() const
    {
        glDisable(GL_LIGHTING);
        glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
        glLineWidth(2.0f);
        draw();
        glLineWidth(1.0f);
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
        glEnable(GL_LIGHTING);
    }

private:
    GLenum m_mode;
    GLsizei m_count;
    GLuint m_name = 0;
};

std::vector<BareBuffer::Vertex> verticesOf(const FaceList &faces)
{
    std::vector<BareBuffer::Vertex> vertices;
    vertices.reserve(faces.size() * 4);
    faces.forEach([&](const QuadFace &face) {
        for (const float(&corner)[3] : face.vertices) {
            BareBuffer::Vertex vertex{};
            std::memcpy(vertex.position, corner, sizeof vertex.position);
            std::memcpy(vertex.normal, face.normal, sizeof vertex.normal);
            std::memcpy(vertex.color, face.color, sizeof vertex.color);
            vertices.push_back(vertex);
        }
    });
    return vertices;
}

std::vector<BareBuffer::Vertex> verticesOf(const Model::Automaton::MarchingCubeSurface &surface)
{
    std::vector<BareBuffer::Vertex> vertices;
    vertices.reserve(surface.triangles().size() * 3);
    for (const Model::Automaton::Triangle &triangle : surface.triangles()) {
        for (const auto &corner : triangle.vertices) {
            BareBuffer::Vertex vertex{{}, {}, {0.5f, 0.5f, 0.5f, 1.0f}};
            std::memcpy(vertex.position, corner.position, sizeof vertex.position);
            std::memcpy(vertex.normal, corner.normal, sizeof vertex.normal);
            vertices.push_back(vertex);
        }
    }
    return vertices;
}

/// With the sphere at each atom that has a bond free.
std::vector<BareBuffer::Vertex> verticesOfAtoms(TotalVolume &volume)
{
    const QVector<float> &mesh = volume.painter().atomicRenderer().atomMesh();
    const int half = mesh.size() / 2;
    std::vector<BareBuffer::Vertex> vertices;
    for (const auto &entry : volume.siLattice()->cells()) {
        for (unsigned rank = 0; rank < SiCell::Atoms; ++rank) {
            const SiAtom &atom = entry.second->atom(rank);
            const Util::Vector3D &place = atom.position();
            if (atom.state() == SiAtom::Removed || !atom.isSurface() ||
                !volume.painter().cutPlanes().contains(static_cast<float>(place[0]),
                                                       static_cast<float>(place[1]),
                                                       static_cast<float>(place[2])))
                continue;
            for (int first = 0; first < half; first += 3) {
                BareBuffer::Vertex vertex{{}, {}, {1.0f, 1.0f, 0.0f, 1.0f}};
                for (int axis = 0; axis < 3; ++axis) {
                    vertex.position[axis] =
                        mesh[first + axis] + static_cast<float>(place[static_cast<unsigned>(axis)]);
                    vertex.normal[axis] = mesh[half + first + axis];
                }
                vertices.push_back(vertex);
            }
        }
    }
    return vertices;
}

std::unique_ptr<TotalVolume> trench(const Size &size, std::uint32_t algorithm)
{
    auto volume =
        std::make_unique<TotalVolume>(size.x, size.y, size.z, 1.0f, 1.0f, 1.0f, Util::Vector3D(),
                                      Benchmarks::trenchMaterials(size));
    volume->painter().setSurfaceAlgorithm(algorithm);
    volume->painter().rebuild();
    return volume;
}

/// A block of silicon whose atoms are all that is drawn.
std::unique_ptr<TotalVolume> crystal(std::int64_t edge)
{
    const auto cells = static_cast<std::uint32_t>(edge);
    auto volume =
        std::make_unique<TotalVolume>(cells, cells, 10, 1.0f, 1.0f, 1.0f, Util::Vector3D(),
                                      std::vector<std::uint32_t>(cells * cells * 10, 1));
    volume->rebuildSiLattice();
    Model::Automaton::Voxel *voxels = volume->voxels();
    for (std::size_t i = 0; i < std::size_t{cells} * cells * 10; ++i)
        voxels[i].setMaterial(0);
    volume->releaseVoxels();
    volume->painter().setRenderAtoms(true);
    volume->painter().rebuild();
    return volume;
}

View *viewOf(benchmark::State &state)
{
    View *view = View::instance();
    if (!view)
        state.SkipWithError("needs a display with OpenGL");
    return view;
}

void drawFrames(benchmark::State &state, View &view, std::size_t vertices,
                const std::function<void()> &act)
{
    // The first frame fills the buffers, which a rebuild pays.
    view.drawNext(act);
    for (auto _ : state)
        view.drawNext(act);
    if (!view.showsSomething())
        state.SkipWithError("the picture is empty");
    state.counters["frames"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
    state.counters["vertices"] = static_cast<double>(vertices);
}

enum Picture
{
    Direct,
    DirectWithEdges,
    Smooth,
    Blocks
};

template <Picture picture, bool isFloor>
void BM_Picture(benchmark::State &state)
{
    View *view = viewOf(state);
    if (!view)
        return;
    const Size size = sizeOf(state.range(0));
    const auto volume = trench(size, picture == Smooth   ? TotalVolumePainter::MarchingCubes
                                     : picture == Blocks ? TotalVolumePainter::Octree
                                                         : TotalVolumePainter::DirectCubic);
    view->frame(size.x, size.y, size.z);
    const TotalVolumePainter &painter = volume->painter();
    const auto vertices = picture == Smooth   ? verticesOf(painter.marchingCubes())
                          : picture == Blocks ? verticesOf(painter.octree().opaqueFaces())
                                              : verticesOf(painter.opaqueFaces());
    if (!isFloor) {
        drawFrames(state, *view, vertices.size(),
                   [&] { volume->draw(true, picture == DirectWithEdges); });
        return;
    }
    const BareBuffer buffer(picture == Smooth ? GL_TRIANGLES : GL_QUADS, vertices);
    drawFrames(state, *view, vertices.size(), [&] {
        buffer.draw();
        if (picture == DirectWithEdges)
            buffer.drawLines();
    });
}

template <bool isFloor>
void BM_PictureOfAtoms(benchmark::State &state)
{
    View *view = viewOf(state);
    if (!view)
        return;
    const auto volume = crystal(state.range(0));
    view->frame(static_cast<double>(state.range(0)), static_cast<double>(state.range(0)), 10);
    const auto vertices = verticesOfAtoms(*volume);
    if (!isFloor) {
        drawFrames(state, *view, vertices.size(), [&] { volume->draw(true, false); });
        return;
    }
    const BareBuffer buffer(GL_TRIANGLES, vertices);
    drawFrames(state, *view, vertices.size(), [&] { buffer.draw(); });
}

void settings(benchmark::internal::Benchmark *benchmark)
{
    benchmark->UseRealTime()->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);
}

void wafers(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(100)->Arg(200)->Arg(400);
    settings(benchmark);
}

void crystals(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(10)->Arg(20)->Arg(40);
    settings(benchmark);
}

BENCHMARK_TEMPLATE(BM_Picture, Direct, false)->Name("BM_PictureDirect")->Apply(wafers);
BENCHMARK_TEMPLATE(BM_Picture, Direct, true)->Name("BM_PictureDirectFloor")->Apply(wafers);
BENCHMARK_TEMPLATE(BM_Picture, DirectWithEdges, false)->Name("BM_PictureEdges")->Apply(wafers);
BENCHMARK_TEMPLATE(BM_Picture, DirectWithEdges, true)->Name("BM_PictureEdgesFloor")->Apply(wafers);
BENCHMARK_TEMPLATE(BM_Picture, Smooth, false)->Name("BM_PictureMarchingCubes")->Apply(wafers);
BENCHMARK_TEMPLATE(BM_Picture, Smooth, true)->Name("BM_PictureMarchingCubesFloor")->Apply(wafers);
BENCHMARK_TEMPLATE(BM_Picture, Blocks, false)->Name("BM_PictureOctree")->Apply(wafers);
BENCHMARK_TEMPLATE(BM_Picture, Blocks, true)->Name("BM_PictureOctreeFloor")->Apply(wafers);
BENCHMARK_TEMPLATE(BM_PictureOfAtoms, false)->Name("BM_PictureAtoms")->Apply(crystals);
BENCHMARK_TEMPLATE(BM_PictureOfAtoms, true)->Name("BM_PictureAtomsFloor")->Apply(crystals);

} // namespace
