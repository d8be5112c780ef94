#include "Model/Automaton/AtomicRenderer.h"

#include "Core/DebugLog.h"
#include "GlTestSupport.h"
#include "Model/Automaton/CutPlanes.h"
#include "Model/Automaton/SiLattice.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Geometry/UnitSphere.h"
#include "Support/Volumes.h"

#include <QGLFunctions>

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

using Fakes::DebugLog;
using Model::Automaton::AtomicRenderer;
using Model::Automaton::CutPlanes;
using Model::Automaton::SiAtom;
using Model::Automaton::SiCell;
using Model::Automaton::SiLattice;
using Model::Automaton::TotalVolume;
using Support::Grid;
using Util::Vector3D;

namespace {

using Floats = std::vector<float>;
using Point = std::array<float, 3>;

const GlTest::Color lightGreen{127 / 255.0, 1, 127 / 255.0};
const GlTest::Color orange{1, 127 / 255.0, 0};
const GlTest::Color blue{0, 0, 1};
const GlTest::Color yellow{1, 1, 0};
const GlTest::Color magenta{1, 0, 127 / 255.0};
const GlTest::Color linkColor{1, 1, 127 / 255.0};
const GlTest::Color outlineColor{127 / 255.0, 127 / 255.0, 1};
const GlTest::Rgba unitCellColor{127 / 255.0, 127 / 255.0, 1, 127 / 255.0};

Floats floatsOf(const QVector<float> &vector)
{
    return {vector.begin(), vector.end()};
}

Point pointOf(const Vector3D &vector)
{
    return {static_cast<float>(vector[0]), static_cast<float>(vector[1]),
            static_cast<float>(vector[2])};
}

void append(Floats &floats, const Point &point)
{
    floats.insert(floats.end(), point.begin(), point.end());
}

class AtomicRendererTest : public GlTest
{
protected:
    /// Silicon, with its crystal.
    void makeCrystal(const Grid &grid, std::uint32_t material = 1)
    {
        m_volume = Support::makeVolume(grid, std::vector<std::uint32_t>(grid.cells(), material));
        m_volume->rebuildSiLattice();
        m_renderer = std::make_unique<AtomicRenderer>(m_volume.get(), &m_planes);
    }
    void TearDown() override
    {
        m_renderer.reset();
        m_volume.reset();
        GlTest::TearDown();
    }

    SiLattice &lattice() { return *m_volume->siLattice(); }

    void build()
    {
        m_renderer->buildUnitCells();
        m_renderer->buildAtoms();
    }

    std::vector<SiAtom *> atoms()
    {
        std::vector<SiAtom *> result;
        for (const SiLattice::Entry &entry : lattice().cells())
            for (unsigned rank = 0; rank < SiCell::Atoms; ++rank)
                result.push_back(&entry.second->atom(rank));
        return result;
    }

    /// An atom with four bonds, like all its neighbours and theirs.
    SiAtom *deepAtom()
    {
        const auto isFull = [](const SiAtom *atom) {
            return atom->state() == SiAtom::Active && atom->bondCount() == 4;
        };
        const auto isDeep = [&](const SiAtom *atom) {
            if (!isFull(atom))
                return false;
            for (unsigned i = 0; i < SiAtom::Bonds; ++i) {
                if (!isFull(atom->link(i)))
                    return false;
                for (unsigned j = 0; j < SiAtom::Bonds; ++j)
                    if (!isFull(atom->link(i)->link(j)))
                        return false;
            }
            return true;
        };
        for (SiAtom *atom : atoms())
            if (isDeep(atom))
                return atom;
        ADD_FAILURE() << "the crystal is too small";
        return atoms().front();
    }

    /// The colour in the middle of a view that shows a tenth of a unit around a place and nothing
    /// that lies farther above or below.
    Color colorAround(const Vector3D &place, const std::function<void()> &act)
    {
        draw([&] {
            glMatrixMode(GL_PROJECTION);
            glPushMatrix();
            glLoadIdentity();
            glOrtho(place[0] - 0.1, place[0] + 0.1, place[1] - 0.1, place[1] + 0.1,
                    -place[2] - 0.11, -place[2] + 0.11);
            glMatrixMode(GL_MODELVIEW);
            act();
            glMatrixMode(GL_PROJECTION);
            glPopMatrix();
            glMatrixMode(GL_MODELVIEW);
        });
        return colorAt(0.05, 0.05, 0);
    }
    void expectAtom(const SiAtom &atom, const Color &expected)
    {
        const Color actual = colorAround(atom.position(), [&] { m_renderer->drawOpaque(); });
        for (unsigned i = 0; i < 3; ++i)
            EXPECT_NEAR(actual[i], expected[i], 2.5 / 255) << "channel " << i;
    }

    /// Both ends of every bond as the rule has them.
    Floats expectedLinks(bool surfaceOnly)
    {
        Floats floats;
        for (const SiAtom *atom : atoms()) {
            if (atom->state() != 1 && atom->state() != 2)
                continue;
            if (surfaceOnly && !atom->isSurface())
                continue;
            const Point place = pointOf(atom->position());
            if (!m_planes.contains(place[0], place[1], place[2]))
                continue;
            for (unsigned bond = 0; bond < 4; ++bond) {
                const SiAtom *other = atom->link(bond);
                if (!other)
                    continue;
                append(floats, place);
                if (other->state() == 1 || other->state() == 2) {
                    append(floats, pointOf(other->position()));
                } else {
                    Point middle{};
                    for (unsigned axis = 0; axis < 3; ++axis)
                        middle[axis] = static_cast<float>(
                            (atom->position()[axis] + other->position()[axis]) / 2);
                    append(floats, middle);
                }
            }
        }
        return floats;
    }

    /// What a buffer holds, as OpenGL has it.
    static Floats contentOf(std::uint32_t buffer, std::size_t count)
    {
        QGLFunctions functions(QGLContext::currentContext());
        functions.glBindBuffer(GL_ARRAY_BUFFER, buffer);
        GLint bytes = 0;
        functions.glGetBufferParameteriv(GL_ARRAY_BUFFER, GL_BUFFER_SIZE, &bytes);
        EXPECT_EQ(static_cast<std::size_t>(bytes), count * sizeof(float));
        Floats floats(static_cast<std::size_t>(bytes) / sizeof(float));
        using Read = void (*)(GLenum, qopengl_GLintptr, qopengl_GLsizeiptr, void *);
        const auto read = reinterpret_cast<Read>(
            QOpenGLContext::currentContext()->getProcAddress("glGetBufferSubData"));
        read(GL_ARRAY_BUFFER, 0, bytes, floats.data());
        functions.glBindBuffer(GL_ARRAY_BUFFER, 0);
        return floats;
    }

    static bool isBuffer(std::uint32_t name)
    {
        return QGLFunctions(QGLContext::currentContext()).glIsBuffer(name);
    }

    CutPlanes m_planes;
    boost::shared_ptr<TotalVolume> m_volume;
    std::unique_ptr<AtomicRenderer> m_renderer;
};

} // namespace

TEST_F(AtomicRendererTest, OnlySurfaceAtomsAreWantedAtFirst)
{
    makeCrystal({2, 2, 2});
    EXPECT_FALSE(m_renderer->renderUnitCells());
    EXPECT_FALSE(m_renderer->renderOutlines());
    EXPECT_FALSE(m_renderer->renderAtoms());
    EXPECT_TRUE(m_renderer->surfaceAtomsOnly());
    EXPECT_FALSE(m_renderer->renderLinks());
}

TEST_F(AtomicRendererTest, SwitchesKeepWhatTheyAreSetTo)
{
    makeCrystal({1, 1, 1});
    struct Switch
    {
        bool (AtomicRenderer::*value)() const;
        void (AtomicRenderer::*set)(bool);
    };
    const Switch switches[] = {
        {&AtomicRenderer::renderUnitCells, &AtomicRenderer::setRenderUnitCells},
        {&AtomicRenderer::renderOutlines, &AtomicRenderer::setRenderOutlines},
        {&AtomicRenderer::renderAtoms, &AtomicRenderer::setRenderAtoms},
        {&AtomicRenderer::surfaceAtomsOnly, &AtomicRenderer::setSurfaceAtomsOnly},
        {&AtomicRenderer::renderLinks, &AtomicRenderer::setRenderLinks}};
    for (const Switch &each : switches)
        ((*m_renderer).*each.set)(false);
    for (const Switch &one : switches) {
        ((*m_renderer).*one.set)(true);
        for (const Switch &each : switches)
            EXPECT_EQ(((*m_renderer).*each.value)(), &each == &one) << "no switch moves another";
        ((*m_renderer).*one.set)(false);
    }
}

TEST_F(AtomicRendererTest, BuildingIsLogged)
{
    makeCrystal({1, 1, 1});
    const DebugLog log;
    m_renderer->buildUnitCells();
    m_renderer->buildAtoms();
    EXPECT_EQ(log.lines(),
              (std::vector<std::string>{"debug: Building unit cells", "debug: Building atoms"}));
}

TEST_F(AtomicRendererTest, PainterBuildsUnitCellsThenAtoms)
{
    const auto volume = Support::makeVolume(Grid{2, 2, 2}, std::vector<std::uint32_t>(8, 1));
    const DebugLog log;
    volume->painter().rebuild();
    EXPECT_EQ(log.lines(),
              (std::vector<std::string>{"debug: Building unit cells", "debug: Building atoms"}));
}

TEST_F(AtomicRendererTest, PainterHandsTheSwitchesOn)
{
    const auto volume = Support::makeVolume(Grid{2, 2, 2}, std::vector<std::uint32_t>(8, 1));
    auto &painter = volume->painter();
    const AtomicRenderer &renderer = painter.atomicRenderer();
    EXPECT_TRUE(painter.surfaceAtomsOnly());
    painter.setRenderAtoms(true);
    EXPECT_TRUE(renderer.renderAtoms() && painter.renderAtoms());
    painter.setRenderLinks(true);
    EXPECT_TRUE(renderer.renderLinks() && painter.renderLinks());
    EXPECT_FALSE(painter.renderUnitCells());
    painter.setRenderUnitCells(true);
    EXPECT_TRUE(renderer.renderUnitCells() && painter.renderUnitCells());
    EXPECT_FALSE(painter.renderOutlines());
    painter.setRenderOutlines(true);
    EXPECT_TRUE(renderer.renderOutlines() && painter.renderOutlines());
    painter.setSurfaceAtomsOnly(false);
    EXPECT_FALSE(renderer.surfaceAtomsOnly() || painter.surfaceAtomsOnly());
}

TEST_F(AtomicRendererTest, WithoutAContextWhatWouldBeBuiltIsSwitchedOff)
{
    makeCrystal({2, 2, 2});
    const auto switchAllOn = [&] {
        m_renderer->setRenderUnitCells(true);
        m_renderer->setRenderOutlines(true);
        m_renderer->setRenderAtoms(true);
        m_renderer->setRenderLinks(true);
    };
    switchAllOn();
    auto *context = const_cast<QGLContext *>(QGLContext::currentContext());
    context->doneCurrent();
    const DebugLog log;
    m_renderer->buildUnitCells();
    EXPECT_FALSE(m_renderer->renderUnitCells());
    EXPECT_FALSE(m_renderer->renderOutlines());
    EXPECT_TRUE(m_renderer->renderAtoms());
    EXPECT_TRUE(m_renderer->renderLinks());

    switchAllOn();
    m_renderer->buildAtoms();
    EXPECT_TRUE(m_renderer->renderUnitCells());
    EXPECT_TRUE(m_renderer->renderOutlines());
    EXPECT_FALSE(m_renderer->renderAtoms());
    EXPECT_FALSE(m_renderer->renderLinks());
    EXPECT_TRUE(m_renderer->surfaceAtomsOnly());
    EXPECT_EQ(log.lines(),
              (std::vector<std::string>{"debug: Building unit cells", "debug: Building atoms"}));

    switchAllOn();
    m_renderer->drawOpaque();
    m_renderer->drawTransparent();
    m_renderer.reset();
    context->makeCurrent();
}

TEST_F(AtomicRendererTest, WithoutACrystalNothingIsBuiltOrDrawn)
{
    m_volume = Support::makeVolume(Grid{2, 2, 2}, std::vector<std::uint32_t>(8, 1));
    m_renderer = std::make_unique<AtomicRenderer>(m_volume.get(), &m_planes);
    m_renderer->setRenderUnitCells(true);
    m_renderer->setRenderOutlines(true);
    m_renderer->setRenderAtoms(true);
    m_renderer->setRenderLinks(true);
    build();
    EXPECT_TRUE(m_renderer->renderAtoms()) << "the options wait for a crystal";
    EXPECT_EQ(m_renderer->unitCellBuffer(), 0U);
    EXPECT_EQ(m_renderer->outlineBuffer(), 0U);
    EXPECT_EQ(m_renderer->atomBuffer(), 0U);
    EXPECT_EQ(m_renderer->linkBuffer(), 0U);
    draw([&] {
        m_renderer->drawOpaque();
        m_renderer->drawTransparent();
    });
    EXPECT_EQ(pixelsOf(background()), GlCanvas::Side * GlCanvas::Side);
}

TEST_F(AtomicRendererTest, AtomMeshHoldsScaledPositionsThenNormals)
{
    makeCrystal({2, 2, 2});
    m_renderer->setRenderAtoms(true);
    build();
    const Floats sphere = Model::Geometry::unitSphere();
    Floats expected;
    for (const float coordinate : sphere)
        expected.push_back(coordinate * 0.1f);
    expected.insert(expected.end(), sphere.begin(), sphere.end());
    EXPECT_EQ(floatsOf(m_renderer->atomMesh()), expected);
    EXPECT_EQ(contentOf(m_renderer->atomBuffer(), expected.size()), expected);
}

TEST_F(AtomicRendererTest, SphereIsMadeOnceAndStays)
{
    makeCrystal({2, 2, 2});
    build();
    EXPECT_EQ(m_renderer->atomBuffer(), 0U);
    m_renderer->setRenderAtoms(true);
    build();
    const std::uint32_t name = m_renderer->atomBuffer();
    EXPECT_TRUE(isBuffer(name));
    build();
    EXPECT_EQ(m_renderer->atomBuffer(), name);
    m_renderer->setRenderAtoms(false);
    build();
    EXPECT_EQ(m_renderer->atomBuffer(), name);
}

TEST_F(AtomicRendererTest, UnitCellIsABoxOfTwelveTriangles)
{
    makeCrystal({2, 2, 2});
    m_renderer->setRenderUnitCells(true);
    build();
    const float s = static_cast<float>(std::sqrt(2.0) / 2);
    const float r = static_cast<float>(std::sqrt(2.0));
    const Point corners[8] = {{0, 0, 0}, {0, 0, 1}, {-s, s, 0}, {-s, s, 1},
                              {s, s, 0}, {s, s, 1}, {0, r, 0},  {0, r, 1}};
    const int triangles[12][3] = {{0, 1, 2}, {1, 3, 2}, {2, 6, 4}, {2, 4, 0}, {1, 0, 4}, {1, 4, 5},
                                  {3, 6, 2}, {6, 3, 7}, {3, 1, 7}, {7, 1, 5}, {6, 7, 5}, {6, 5, 4}};
    Floats expected;
    for (const auto &triangle : triangles)
        for (const int corner : triangle)
            append(expected, corners[corner]);
    EXPECT_EQ(floatsOf(m_renderer->unitCellVertices()), expected);
    EXPECT_EQ(contentOf(m_renderer->unitCellBuffer(), expected.size()), expected);
}

TEST_F(AtomicRendererTest, OutlinesAreSixLoopsAUnitCellInKeyOrder)
{
    makeCrystal({3, 2, 2});
    m_renderer->setRenderOutlines(true);
    build();
    const float s = static_cast<float>(std::sqrt(2.0) / 2);
    const float r = static_cast<float>(std::sqrt(2.0));
    const Point loops[24] = {{0, 0, 0},  {-s, s, 0}, {0, r, 0}, {s, s, 0}, {0, 0, 1}, {s, s, 1},
                             {0, r, 1},  {-s, s, 1}, {0, 0, 0}, {s, s, 0}, {s, s, 1}, {0, 0, 1},
                             {-s, s, 0}, {-s, s, 1}, {0, r, 1}, {0, r, 0}, {0, 0, 0}, {0, 0, 1},
                             {-s, s, 1}, {-s, s, 0}, {s, s, 0}, {0, r, 0}, {0, r, 1}, {s, s, 1}};
    Floats expected;
    for (const SiLattice::Entry &entry : lattice().cells())
        for (const Point &point : loops)
            append(expected, pointOf(Vector3D(entry.second->position() +
                                              Vector3D(point[0], point[1], point[2]))));
    EXPECT_EQ(floatsOf(m_renderer->outlineVertices()), expected);
    EXPECT_EQ(contentOf(m_renderer->outlineBuffer(), expected.size()), expected);
}

TEST_F(AtomicRendererTest, CutAlongZTakesAllOutlinesOrNone)
{
    makeCrystal({3, 3, 4});
    m_renderer->setRenderOutlines(true);
    build();
    const int all = m_renderer->outlineVertices().size();
    ASSERT_GT(all, 0);
    m_planes.add(0, 0, 1, -2); // keeps what lies below 2, and 0 does
    build();
    EXPECT_EQ(m_renderer->outlineVertices().size(), all);
    m_planes.add(0, 0, -1, 1); // keeps what lies above 1, and 0 does not
    build();
    EXPECT_EQ(m_renderer->outlineVertices().size(), 0);
}

TEST_F(AtomicRendererTest, OutlinesAreCutAlongXAndY)
{
    makeCrystal({4, 4, 2});
    m_renderer->setRenderOutlines(true);
    m_planes.add(-1, 0, 0, 2);
    m_planes.add(0, 1, 0, -3);
    build();
    int inside = 0;
    for (const SiLattice::Entry &entry : lattice().cells()) {
        const Point place = pointOf(entry.second->position());
        inside += m_planes.contains(place[0], place[1], 0) ? 1 : 0;
    }
    ASSERT_GT(inside, 0);
    EXPECT_LT(static_cast<std::size_t>(inside), lattice().cells().size());
    EXPECT_EQ(m_renderer->outlineVertices().size(), inside * 24 * 3);
}

TEST_F(AtomicRendererTest, LinksAreBuiltAtomByAtomInKeyAndRankOrder)
{
    makeCrystal({3, 3, 3});
    atoms()[5]->setState(SiAtom::Removed);
    deepAtom()->setState(SiAtom::Removed);
    m_renderer->setRenderLinks(true);
    for (const bool surfaceOnly : {true, false}) {
        SCOPED_TRACE(surfaceOnly);
        m_renderer->setSurfaceAtomsOnly(surfaceOnly);
        build();
        const Floats expected = expectedLinks(surfaceOnly);
        ASSERT_FALSE(expected.empty());
        EXPECT_EQ(floatsOf(m_renderer->linkVertices()), expected);
        EXPECT_EQ(contentOf(m_renderer->linkBuffer(), expected.size()), expected);
    }
}

TEST_F(AtomicRendererTest, LinksOfAtomsThatAreCutAwayAreLeftOut)
{
    makeCrystal({3, 3, 3});
    m_renderer->setRenderLinks(true);
    m_renderer->setSurfaceAtomsOnly(false);
    const std::size_t all = expectedLinks(false).size();
    m_planes.add(0, 0, 1, -1);
    m_planes.add(-1, 0, 0, 1);
    build();
    const Floats expected = expectedLinks(false);
    EXPECT_LT(expected.size(), all);
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(floatsOf(m_renderer->linkVertices()), expected);
}

TEST_F(AtomicRendererTest, LinkToARemovedAtomEndsHalfway)
{
    makeCrystal({3, 3, 3});
    SiAtom *atom = deepAtom();
    SiAtom *removed = atom->link(2);
    removed->setState(SiAtom::Removed);
    m_renderer->setRenderLinks(true);
    build();
    const Point from = pointOf(atom->position());
    const Point to = pointOf(removed->position());
    const Floats links = floatsOf(m_renderer->linkVertices());
    int found = 0;
    for (std::size_t i = 0; i < links.size(); i += 6) {
        if (!std::equal(from.begin(), from.end(), links.begin() + static_cast<long>(i)))
            continue;
        ++found;
        if (found == 3) {
            for (unsigned axis = 0; axis < 3; ++axis)
                EXPECT_NEAR(links[i + 3 + axis], (from[axis] + to[axis]) / 2, 1e-6);
        }
    }
    EXPECT_EQ(found, 4) << "all bonds of the atom, in their order";
}

TEST_F(AtomicRendererTest, LinkToAMaskEndsHalfway)
{
    makeCrystal({3, 3, 3});
    SiAtom *atom = deepAtom();
    atom->link(0)->setState(SiAtom::Mask);
    m_renderer->setRenderLinks(true);
    m_renderer->setSurfaceAtomsOnly(false);
    build();
    EXPECT_EQ(floatsOf(m_renderer->linkVertices()), expectedLinks(false));
}

TEST_F(AtomicRendererTest, BuffersOfTheLastBuildAreDeleted)
{
    makeCrystal({2, 2, 2});
    m_renderer->setRenderUnitCells(true);
    m_renderer->setRenderOutlines(true);
    m_renderer->setRenderLinks(true);
    build();
    const std::vector<std::uint32_t> names{m_renderer->unitCellBuffer(),
                                           m_renderer->outlineBuffer(), m_renderer->linkBuffer()};
    for (const std::uint32_t name : names)
        EXPECT_TRUE(isBuffer(name));
    m_renderer->setRenderUnitCells(false);
    m_renderer->setRenderOutlines(false);
    m_renderer->setRenderLinks(false);
    build();
    for (const std::uint32_t name : names)
        EXPECT_FALSE(isBuffer(name));
    EXPECT_TRUE(m_renderer->unitCellVertices().isEmpty());
    EXPECT_TRUE(m_renderer->outlineVertices().isEmpty());
    EXPECT_TRUE(m_renderer->linkVertices().isEmpty());
    EXPECT_EQ(m_renderer->unitCellBuffer(), 0U);
    EXPECT_EQ(m_renderer->outlineBuffer(), 0U);
    EXPECT_EQ(m_renderer->linkBuffer(), 0U);
}

TEST_F(AtomicRendererTest, BuffersGoWithTheRenderer)
{
    makeCrystal({2, 2, 2});
    m_renderer->setRenderUnitCells(true);
    m_renderer->setRenderOutlines(true);
    m_renderer->setRenderAtoms(true);
    m_renderer->setRenderLinks(true);
    build();
    const std::vector<std::uint32_t> names{m_renderer->unitCellBuffer(),
                                           m_renderer->outlineBuffer(), m_renderer->atomBuffer(),
                                           m_renderer->linkBuffer()};
    for (const std::uint32_t name : names)
        EXPECT_TRUE(isBuffer(name));
    m_renderer.reset();
    for (const std::uint32_t name : names)
        EXPECT_FALSE(isBuffer(name));
}

TEST_F(AtomicRendererTest, BuffersOfAnotherWindowAreNeitherUsedNorDeleted)
{
    makeCrystal({2, 2, 2});
    m_renderer->setRenderAtoms(true);
    m_renderer->setRenderLinks(true);
    build();
    const std::uint32_t name = m_renderer->atomBuffer();
    ASSERT_NE(name, 0U);
    auto *first = const_cast<QGLContext *>(QGLContext::currentContext());
    {
        QGLWidget other;
        other.makeCurrent();
        EXPECT_EQ(m_renderer->atomBuffer(), 0U);
        EXPECT_EQ(m_renderer->linkBuffer(), 0U);
        m_renderer->drawOpaque();
        build();
        EXPECT_NE(m_renderer->atomBuffer(), 0U);
        m_renderer.reset();
        EXPECT_EQ(glGetError(), unsigned{GL_NO_ERROR});
    }
    first->makeCurrent();
    EXPECT_TRUE(isBuffer(name));
}

TEST_F(AtomicRendererTest, RendererOutlivesTheWindowItWasDrawnIn)
{
    makeCrystal({2, 2, 2});
    m_renderer->setRenderAtoms(true);
    m_renderer->setRenderLinks(true);
    auto *first = const_cast<QGLContext *>(QGLContext::currentContext());
    {
        QGLWidget window;
        window.makeCurrent();
        build();
        EXPECT_NE(m_renderer->atomBuffer(), 0U);
    }
    EXPECT_EQ(m_renderer->atomBuffer(), 0U);
    first->makeCurrent();
    EXPECT_EQ(m_renderer->atomBuffer(), 0U);
    build();
    EXPECT_TRUE(isBuffer(m_renderer->atomBuffer()));
}

TEST_F(AtomicRendererTest, FullyBondedAtomInTheBulkIsYellowAndOnlyShownWithAllAtoms)
{
    makeCrystal({4, 4, 4});
    const SiAtom *atom = deepAtom();
    m_renderer->setRenderAtoms(true);
    build();
    expectAtom(*atom, background());
    m_renderer->setSurfaceAtomsOnly(false);
    expectAtom(*atom, yellow);
}

TEST_F(AtomicRendererTest, AtomWithTwoBondsIsLightGreen)
{
    makeCrystal({4, 4, 4});
    SiAtom *atom = deepAtom();
    atom->link(0)->setState(SiAtom::Removed);
    atom->link(1)->setState(SiAtom::Removed);
    m_renderer->setRenderAtoms(true);
    build();
    expectAtom(*atom, lightGreen);
}

TEST_F(AtomicRendererTest, AtomWithThreeBondsAndNineSecondNeighboursIsBlue)
{
    makeCrystal({4, 4, 4});
    SiAtom *atom = deepAtom();
    atom->link(0)->setState(SiAtom::Removed);
    ASSERT_EQ(atom->bondCount(), 3U);
    ASSERT_EQ(atom->secondNeighbourCount(), 9U);
    m_renderer->setRenderAtoms(true);
    build();
    expectAtom(*atom, blue);
}

TEST_F(AtomicRendererTest, AtomWithThreeBondsAndEightSecondNeighboursIsOrange)
{
    makeCrystal({4, 4, 4});
    SiAtom *atom = deepAtom();
    atom->link(0)->setState(SiAtom::Removed);
    SiAtom *neighbour = atom->link(1);
    for (unsigned bond = 0; bond < SiAtom::Bonds; ++bond)
        if (neighbour->link(bond) != atom) {
            neighbour->link(bond)->setState(SiAtom::Removed);
            break;
        }
    ASSERT_EQ(atom->bondCount(), 3U);
    ASSERT_EQ(atom->secondNeighbourCount(), 8U);
    m_renderer->setRenderAtoms(true);
    build();
    expectAtom(*atom, orange);
}

TEST_F(AtomicRendererTest, AtomsWithOneBondOrNoneAreYellow)
{
    makeCrystal({4, 4, 4});
    SiAtom *atom = deepAtom();
    m_renderer->setRenderAtoms(true);
    build();
    for (unsigned bond = 0; bond < 3; ++bond)
        atom->link(bond)->setState(SiAtom::Removed);
    ASSERT_EQ(atom->bondCount(), 1U);
    expectAtom(*atom, yellow);
    atom->link(3)->setState(SiAtom::Removed);
    ASSERT_EQ(atom->bondCount(), 0U);
    expectAtom(*atom, yellow);
}

TEST_F(AtomicRendererTest, RemovedAtomIsNotDrawn)
{
    makeCrystal({4, 4, 4});
    SiAtom *atom = deepAtom();
    m_renderer->setRenderAtoms(true);
    m_renderer->setSurfaceAtomsOnly(false);
    build();
    expectAtom(*atom, yellow);
    atom->setState(SiAtom::Removed);
    expectAtom(*atom, background());
}

TEST_F(AtomicRendererTest, MaskAtomOfAUnitCellIsYellowAndOneOfTheListMagenta)
{
    makeCrystal({4, 4, 4});
    SiAtom *atom = deepAtom();
    atom->setState(SiAtom::Mask);
    atom->link(0)->setState(SiAtom::Removed);
    const auto mask = boost::make_shared<SiAtom>(Vector3D(-3, -3, 5), nullptr, true);
    lattice().maskAtoms().push_back(mask);
    m_renderer->setRenderAtoms(true);
    build();
    expectAtom(*atom, yellow);
    expectAtom(*mask, magenta);
}

TEST_F(AtomicRendererTest, MaskAtomsOfTheListAreNeitherCutNorLeftOutInTheBulk)
{
    makeCrystal({4, 4, 4});
    SiAtom *atom = deepAtom();
    // Bonded all round, and outside the planes.
    const auto mask = boost::make_shared<SiAtom>(Vector3D(8, 8, 8), nullptr, true);
    for (unsigned bond = 0; bond < SiAtom::Bonds; ++bond)
        mask->setLink(bond, atom);
    lattice().maskAtoms().push_back(mask);
    m_planes.add(1, 0, 0, -4);
    m_renderer->setRenderAtoms(true);
    build();
    expectAtom(*mask, magenta);
    m_renderer->setRenderAtoms(false);
    expectAtom(*mask, background());
}

TEST_F(AtomicRendererTest, AtomsThatAreCutAwayAreNotDrawn)
{
    makeCrystal({4, 4, 4});
    const SiAtom *atom = deepAtom();
    m_renderer->setRenderAtoms(true);
    m_renderer->setSurfaceAtomsOnly(false);
    build();
    const auto z = static_cast<float>(atom->position()[2]);
    m_planes.add(0, 0, 1, -(z + 0.1f));
    expectAtom(*atom, yellow);
    m_planes.add(0, 0, 1, -(z - 0.1f));
    expectAtom(*atom, background());
}

TEST_F(AtomicRendererTest, AtomsAreLitSpheresOfATenth)
{
    makeCrystal({4, 4, 4});
    const SiAtom *atom = deepAtom();
    m_renderer->setRenderAtoms(true);
    m_renderer->setSurfaceAtomsOnly(false);
    build();
    const auto drawLit = [&] {
        const float none[4] = {0, 0, 0, 1};
        const float white[4] = {1, 1, 1, 1};
        const float above[4] = {0, 0, 1, 0};
        glLightModelfv(GL_LIGHT_MODEL_AMBIENT, none);
        glLightfv(GL_LIGHT0, GL_POSITION, above);
        glLightfv(GL_LIGHT0, GL_AMBIENT, none);
        glLightfv(GL_LIGHT0, GL_DIFFUSE, white);
        glLightfv(GL_LIGHT0, GL_SPECULAR, none);
        glColorMaterial(GL_FRONT, GL_AMBIENT_AND_DIFFUSE);
        glEnable(GL_COLOR_MATERIAL);
        glEnable(GL_LIGHT0);
        glEnable(GL_LIGHTING);
        m_renderer->drawOpaque();
        glDisable(GL_LIGHTING);
    };
    colorAround(atom->position(), drawLit);
    // The view is two tenths wide: the middle looks up, the rim to the side, the corners are bare.
    const double edge = HalfSide;
    EXPECT_GT(colorAt(0.05, 0.05, 0)[0], 0.98);
    const double atHalf = colorAt(edge / 2, 0.05, 0)[0];
    EXPECT_NEAR(atHalf, std::sqrt(0.75), 0.03);
    EXPECT_LT(colorAt(edge * 0.94, 0.05, 0)[0], 0.5);
    expectColorAt(edge * 0.8, edge * 0.8, 0, background());
}

TEST_F(AtomicRendererTest, SwitchTakesEffectAtTheNextBuildButForAtomsWithASphere)
{
    makeCrystal({4, 4, 4});
    const SiAtom *atom = deepAtom();
    m_renderer->setSurfaceAtomsOnly(false);
    build();
    const auto isBlank = [&](const std::function<void()> &act) {
        draw(act);
        return pixelsOf(background()) == GlCanvas::Side * GlCanvas::Side;
    };
    const auto opaque = [&] { m_renderer->drawOpaque(); };
    const auto transparent = [&] { m_renderer->drawTransparent(); };
    m_renderer->setRenderLinks(true);
    m_renderer->setRenderOutlines(true);
    m_renderer->setRenderUnitCells(true);
    m_renderer->setRenderAtoms(true);
    EXPECT_TRUE(isBlank(opaque));
    EXPECT_TRUE(isBlank(transparent));

    build();
    EXPECT_FALSE(isBlank(opaque));
    EXPECT_FALSE(isBlank(transparent));

    m_renderer->setRenderLinks(false);
    m_renderer->setRenderOutlines(false);
    m_renderer->setRenderUnitCells(false);
    m_renderer->setRenderAtoms(false);
    EXPECT_TRUE(isBlank(opaque));
    EXPECT_TRUE(isBlank(transparent));
    m_renderer->setRenderAtoms(true);
    expectAtom(*atom, yellow);
}

TEST_F(AtomicRendererTest, LinkIsDrawnFromAtomToAtom)
{
    makeCrystal({4, 4, 4});
    const SiAtom *atom = deepAtom();
    m_renderer->setSurfaceAtomsOnly(false);
    m_renderer->setRenderLinks(true);
    build();
    const Vector3D quarter(0.75 * atom->position() + 0.25 * atom->link(3)->position());
    colorAround(quarter, [&] { m_renderer->drawOpaque(); });
    EXPECT_GT(pixelsOf(linkColor), 50);
}

TEST_F(AtomicRendererTest, LinksShowTheCrystalAsItWasBuilt)
{
    makeCrystal({4, 4, 4});
    SiAtom *atom = deepAtom();
    m_renderer->setSurfaceAtomsOnly(false);
    m_renderer->setRenderLinks(true);
    build();
    const Floats before = floatsOf(m_renderer->linkVertices());
    atom->setState(SiAtom::Removed);
    const auto pixels = [&] {
        colorAround(atom->position(), [&] { m_renderer->drawOpaque(); });
        return pixelsOf(linkColor);
    };
    EXPECT_GT(pixels(), 0);
    EXPECT_EQ(floatsOf(m_renderer->linkVertices()), before);
    build();
    EXPECT_EQ(pixels(), 0);
}

TEST_F(AtomicRendererTest, OutlinesAreUnlitLinesOfTwoPixels)
{
    makeCrystal({1, 1, 1});
    ASSERT_FALSE(lattice().cells().empty());
    m_renderer->setRenderOutlines(true);
    build();
    glEnable(GL_LIGHTING);
    glDisable(GL_LIGHT0);
    // Upright edges of the frames, seen from the front.
    look(FromFront);
    draw([&] { m_renderer->drawOpaque(); });
    const Vector3D corner = lattice().cells().front().second->position();
    const double z = corner[2] + 0.55;
    EXPECT_EQ(pixelsOf(outlineColor, {corner[0] - 0.2, 0, z}, {corner[0] + 0.2, 0, z}), 2);
    EXPECT_EQ(integer(GL_LIGHTING), 1);
    glDisable(GL_LIGHTING);
}

TEST_F(AtomicRendererTest, ManyOutlinesAreAllDrawn)
{
    makeCrystal({20, 20, 2}); // more loops than one call draws
    ASSERT_GT(lattice().cells().size(), 1024U / 6 + 1);
    m_renderer->setRenderOutlines(true);
    build();
    draw([&] {
        glTranslated(-10, -10, 0);
        m_renderer->drawOpaque();
        glTranslated(10, 10, 0);
    });
    for (const SiLattice::Entry &entry : lattice().cells()) {
        const Vector3D p = entry.second->position();
        EXPECT_GT(
            pixelsOf(outlineColor, {p[0] - 10.1, p[1] - 10.1, 0}, {p[0] - 9.9, p[1] - 9.9, 0}), 0)
            << "unit cell " << entry.first;
    }
}

TEST_F(AtomicRendererTest, UnitCellsBlendUnlitOverWhatIsBehind)
{
    makeCrystal({1, 1, 1});
    m_renderer->setRenderUnitCells(true);
    build();
    // The boxes' lids look up.
    glEnable(GL_LIGHTING);
    const Vector3D corner = lattice().cells().front().second->position();
    draw([&] { m_renderer->drawTransparent(); });
    std::size_t above = 0;
    for (const SiLattice::Entry &entry : lattice().cells())
        above += std::abs(entry.second->position()[0] - corner[0]) < 1e-6 &&
                         std::abs(entry.second->position()[1] - corner[1]) < 1e-6
                     ? 1
                     : 0;
    Color expected = background();
    for (std::size_t i = 0; i < above; ++i)
        expected = over(expected, unitCellColor);
    expectColorAt(corner[0] + 0.02, corner[1] + std::sqrt(2.0) / 2 + 0.02, 0, expected);
    EXPECT_EQ(integer(GL_LIGHTING), 1);
    EXPECT_EQ(integer(GL_DEPTH_WRITEMASK), 1);
    EXPECT_EQ(integer(GL_BLEND), 0);
    glDisable(GL_LIGHTING);
}

TEST_F(AtomicRendererTest, UnitCellsAreCutByTheirTrueHeight)
{
    makeCrystal({1, 1, 3});
    m_renderer->setRenderUnitCells(true);
    build();
    m_planes.add(0, 0, -1, 2); // keeps what begins at 2 or above
    look(FromFront);
    draw([&] { m_renderer->drawTransparent(); });
    const auto drawn = [&](double from, double to) {
        const int all = static_cast<int>(48 * std::lround((to - from) * 10));
        return all - pixelsOf(background(), {-2.35, 0, from + 0.05}, {2.35, 0, to - 0.05});
    };
    EXPECT_EQ(drawn(0, 2), 0);
    EXPECT_GT(drawn(2, 3), 0);
}

TEST_F(AtomicRendererTest, DrawingLeavesArraysAndBuffersUnbound)
{
    makeCrystal({2, 2, 2});
    m_renderer->setRenderUnitCells(true);
    m_renderer->setRenderOutlines(true);
    m_renderer->setRenderAtoms(true);
    m_renderer->setRenderLinks(true);
    build();
    const auto matrix = modelview();
    draw([&] {
        m_renderer->drawOpaque();
        m_renderer->drawTransparent();
    });
    for (const unsigned name : {GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY})
        EXPECT_EQ(integer(name), 0);
    EXPECT_EQ(integer(GL_ARRAY_BUFFER_BINDING), 0);
    EXPECT_EQ(modelview(), matrix);
}

TEST_F(AtomicRendererTest, PainterDrawsAtomsWithDirectFacesAndUnitCellsWithEverySurface)
{
    // Without faces in the way: the cells go after the crystal was laid over them.
    const Grid grid{4, 4, 4};
    makeCrystal(grid);
    auto *cells = m_volume->voxels();
    for (std::size_t i = 0; i < grid.cells(); ++i)
        cells[i].setMaterial(0);
    m_volume->releaseVoxels();
    const SiAtom *atom = deepAtom();
    auto &painter = m_volume->painter();
    painter.setRenderAtoms(true);
    painter.setSurfaceAtomsOnly(false);
    painter.rebuild();
    const auto drawn = [&] {
        return colorAround(atom->position(), [&] {
            glPushMatrix(); // the smooth surface pops one more than it pushes
            m_volume->draw(true, false);
            while (integer(GL_MODELVIEW_STACK_DEPTH) > 1)
                glPopMatrix();
        });
    };
    const Color shown = drawn();
    EXPECT_NEAR(shown[0], yellow[0], 0.01);
    EXPECT_NEAR(shown[2], yellow[2], 0.01);
    for (const std::uint32_t algorithm : {1U, 2U}) {
        painter.setSurfaceAlgorithm(algorithm);
        painter.rebuild();
        EXPECT_EQ(drawn(), background()) << algorithm;
    }
    painter.setRenderUnitCells(true);
    for (const std::uint32_t algorithm : {0U, 1U, 2U}) {
        painter.setSurfaceAlgorithm(algorithm);
        painter.setRenderAtoms(false);
        painter.rebuild();
        look(FromAbove);
        draw([&] {
            glPushMatrix();
            m_volume->draw(true, false);
            while (integer(GL_MODELVIEW_STACK_DEPTH) > 1)
                glPopMatrix();
        });
        EXPECT_LT(pixelsOf(background()), GlCanvas::Side * GlCanvas::Side) << algorithm;
    }
}
