#define GL_GLEXT_PROTOTYPES

#include "Model/Automaton/AtomicRenderer.h"

#include "Model/Automaton/CutPlanes.h"
#include "Model/Automaton/SiLattice.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Geometry/DrawState.h"
#include "Model/Geometry/UnitSphere.h"

#include <QDebug>

#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Model::Automaton {

using Geometry::DrawBuffer;
using Util::Vector3D;

namespace {

constexpr float AtomRadius = 0.1f;
constexpr int VerticesOfLoop = 4;
/// Loops that one call draws.
constexpr int LoopsOfBatch = 1024;

using AtomColor = std::array<std::uint8_t, 3>;
constexpr AtomColor TwoBonds = {127, 255, 127};
constexpr AtomColor ThreeBondsManyNeighbours = {0, 0, 255};
constexpr AtomColor ThreeBondsFewNeighbours = {255, 127, 0};
constexpr AtomColor OtherAtom = {255, 255, 0};
constexpr AtomColor MaskAtom = {255, 0, 127};

/// The sides of the box between the corners of a unit cell.
constexpr std::uint8_t BoxTriangles[12][3] = {
    {0, 1, 2}, {1, 3, 2}, {2, 6, 4}, {2, 4, 0}, {1, 0, 4}, {1, 4, 5},
    {3, 6, 2}, {6, 3, 7}, {3, 1, 7}, {7, 1, 5}, {6, 7, 5}, {6, 5, 4},
};

AtomColor colorOf(const SiAtom &atom)
{
    switch (atom.bondCount()) {
    case 2:
        return TwoBonds;
    case 3:
        return atom.secondNeighbourCount() >= 9 ? ThreeBondsManyNeighbours
                                                : ThreeBondsFewNeighbours;
    default:
        return OtherAtom;
    }
}

void append(QVector<float> &vertices, const Vector3D &point)
{
    for (unsigned axis = 0; axis < 3; ++axis)
        vertices.append(static_cast<float>(point[axis]));
}

void upload(DrawBuffer &buffer, const QVector<float> &floats)
{
    buffer.upload(floats.constData(), static_cast<std::size_t>(floats.size()) * sizeof(float));
}

GLsizei vertexCount(const QVector<float> &floats)
{
    return floats.size() / 3;
}

bool hasBonds(const SiAtom &atom)
{
    return atom.state() == 1 || atom.state() == 2;
}

} // namespace

AtomicRenderer::AtomicRenderer(TotalVolume *volume, const CutPlanes *cutPlanes)
    : m_volume(volume),
      m_cutPlanes(cutPlanes)
{}

AtomicRenderer::~AtomicRenderer() = default;

void AtomicRenderer::buildUnitCells()
{
    qDebug() << "Building unit cells";
    if (!DrawBuffer::isContextCurrent()) {
        m_renderUnitCells = false;
        m_renderOutlines = false;
        return;
    }
    m_outlineBuffer.release();
    m_unitCellBuffer.release();
    m_outlineVertices.clear();
    m_unitCellVertices.clear();
    const auto lattice = m_volume->siLattice();
    if (!lattice)
        return;
    if (m_renderUnitCells) {
        for (const std::uint8_t(&triangle)[3] : BoxTriangles)
            for (const std::uint8_t corner : triangle)
                append(m_unitCellVertices, lattice->corners()[corner]);
        upload(m_unitCellBuffer, m_unitCellVertices);
    }
    if (m_renderOutlines)
        buildOutlines(*lattice);
}

void AtomicRenderer::buildOutlines(const SiLattice &lattice)
{
    const float s = static_cast<float>(std::sqrt(2.0) / 2.0);
    const float r = static_cast<float>(std::sqrt(2.0));
    const float loops[6][VerticesOfLoop][3] = {
        {{0, 0, 0}, {-s, s, 0}, {0, r, 0}, {s, s, 0}},
        {{0, 0, 1}, {s, s, 1}, {0, r, 1}, {-s, s, 1}},
        {{0, 0, 0}, {s, s, 0}, {s, s, 1}, {0, 0, 1}},
        {{-s, s, 0}, {-s, s, 1}, {0, r, 1}, {0, r, 0}},
        {{0, 0, 0}, {0, 0, 1}, {-s, s, 1}, {-s, s, 0}},
        {{s, s, 0}, {0, r, 0}, {0, r, 1}, {s, s, 1}},
    };
    for (const SiLattice::Entry &entry : lattice.cells()) {
        const Vector3D &position = entry.second->position();
        // The fourth component stands in for the height, so that outlines are cut along z all
        // together or not at all.
        if (!m_cutPlanes->contains(static_cast<float>(position[0]), static_cast<float>(position[1]),
                                   static_cast<float>(position[3])))
            continue;
        for (const float(&loop)[VerticesOfLoop][3] : loops)
            for (const float(&vertex)[3] : loop)
                append(m_outlineVertices, position + Vector3D(vertex[0], vertex[1], vertex[2]));
    }
    upload(m_outlineBuffer, m_outlineVertices);
}

void AtomicRenderer::buildAtoms()
{
    qDebug() << "Building atoms";
    if (!DrawBuffer::isContextCurrent()) {
        m_renderAtoms = false;
        m_renderLinks = false;
        return;
    }
    m_linkBuffer.release();
    m_linkVertices.clear();
    const auto lattice = m_volume->siLattice();
    if (!lattice)
        return;
    if (m_renderAtoms && atomBuffer() == 0) {
        const std::vector<float> sphere = Geometry::unitSphere();
        m_atomMesh.clear();
        m_atomMesh.reserve(static_cast<int>(2 * sphere.size()));
        for (const float coordinate : sphere)
            m_atomMesh.append(coordinate * AtomRadius);
        for (const float coordinate : sphere)
            m_atomMesh.append(coordinate);
        upload(m_atomBuffer, m_atomMesh);
    }
    if (m_renderLinks)
        buildLinks(*lattice);
}

void AtomicRenderer::buildLinks(const SiLattice &lattice)
{
    for (const SiLattice::Entry &entry : lattice.cells()) {
        for (unsigned rank = 0; rank < SiCell::Atoms; ++rank) {
            const SiAtom &atom = entry.second->atom(rank);
            if (!hasBonds(atom) || (m_surfaceAtomsOnly && !atom.isSurface()) || isCutAway(atom))
                continue;
            for (unsigned bond = 0; bond < SiAtom::Bonds; ++bond) {
                const SiAtom *other = atom.link(bond);
                if (!other)
                    continue;
                append(m_linkVertices, atom.position());
                append(m_linkVertices, hasBonds(*other)
                                           ? other->position()
                                           : Vector3D(0.5 * (atom.position() + other->position())));
            }
        }
    }
    upload(m_linkBuffer, m_linkVertices);
}

bool AtomicRenderer::isCutAway(const SiAtom &atom) const
{
    const Vector3D &position = atom.position();
    return !m_cutPlanes->contains(static_cast<float>(position[0]), static_cast<float>(position[1]),
                                  static_cast<float>(position[2]));
}

void AtomicRenderer::drawOpaque() const
{
    const auto lattice = m_volume->siLattice();
    if (lattice && m_renderAtoms && m_atomBuffer.bind()) {
        const std::size_t half = static_cast<std::size_t>(m_atomMesh.size()) / 2 * sizeof(float);
        glVertexPointer(3, GL_FLOAT, 0, DrawBuffer::place(0));
        glNormalPointer(GL_FLOAT, 0, DrawBuffer::place(half));
        glEnableClientState(GL_VERTEX_ARRAY);
        glEnableClientState(GL_NORMAL_ARRAY);
        drawAtoms(*lattice);
        glDisableClientState(GL_NORMAL_ARRAY);
        glDisableClientState(GL_VERTEX_ARRAY);
        DrawBuffer::unbind();
    }
    if (m_renderLinks && m_linkBuffer.bind()) {
        glVertexPointer(3, GL_FLOAT, 0, DrawBuffer::place(0));
        glEnableClientState(GL_VERTEX_ARRAY);
        glColor3ub(255, 255, 127);
        // Level, so that links have one shade whatever was drawn before them.
        glNormal3f(0.0f, 0.0f, 1.0f);
        glDrawArrays(GL_LINES, 0, vertexCount(m_linkVertices));
        glDisableClientState(GL_VERTEX_ARRAY);
        DrawBuffer::unbind();
    }
    if (m_renderOutlines && m_outlineBuffer.bind()) {
        drawOutlines();
        DrawBuffer::unbind();
    }
}

void AtomicRenderer::drawAtoms(SiLattice &lattice) const
{
    for (const SiLattice::Entry &entry : lattice.cells()) {
        for (unsigned rank = 0; rank < SiCell::Atoms; ++rank) {
            const SiAtom &atom = entry.second->atom(rank);
            if (atom.state() == SiAtom::Removed || (m_surfaceAtomsOnly && !atom.isSurface()) ||
                isCutAway(atom))
                continue;
            glColor3ubv(colorOf(atom).data());
            drawSphere(atom);
        }
    }
    glColor3ubv(MaskAtom.data());
    for (const boost::shared_ptr<SiAtom> &atom : lattice.maskAtoms())
        drawSphere(*atom);
}

void AtomicRenderer::drawSphere(const SiAtom &atom) const
{
    const Vector3D &position = atom.position();
    glPushMatrix();
    glTranslated(position[0], position[1], position[2]);
    glDrawArrays(GL_TRIANGLES, 0, vertexCount(m_atomMesh) / 2);
    glPopMatrix();
}

void AtomicRenderer::drawOutlines() const
{
    static const auto firsts = [] {
        std::array<GLint, LoopsOfBatch> places{};
        for (int i = 0; i < LoopsOfBatch; ++i)
            places[static_cast<std::size_t>(i)] = i * VerticesOfLoop;
        return places;
    }();
    static const auto counts = [] {
        std::array<GLsizei, LoopsOfBatch> lengths{};
        lengths.fill(VerticesOfLoop);
        return lengths;
    }();
    Geometry::pushEdgeState();
    glColor3ub(127, 127, 255);
    glEnableClientState(GL_VERTEX_ARRAY);
    const GLsizei loops = vertexCount(m_outlineVertices) / VerticesOfLoop;
    for (GLsizei first = 0; first < loops; first += LoopsOfBatch) {
        const std::size_t start = static_cast<std::size_t>(first) * VerticesOfLoop * 3;
        glVertexPointer(3, GL_FLOAT, 0, DrawBuffer::place(start * sizeof(float)));
        glMultiDrawArrays(GL_LINE_LOOP, firsts.data(), counts.data(),
                          std::min(loops - first, LoopsOfBatch));
    }
    glDisableClientState(GL_VERTEX_ARRAY);
    glPopAttrib();
}

void AtomicRenderer::drawTransparent() const
{
    const auto lattice = m_volume->siLattice();
    if (!lattice || !m_renderUnitCells || !m_unitCellBuffer.bind())
        return;
    Geometry::pushTransparentState();
    glDisable(GL_LIGHTING);
    glColor4ub(127, 127, 255, 127);
    glVertexPointer(3, GL_FLOAT, 0, DrawBuffer::place(0));
    glEnableClientState(GL_VERTEX_ARRAY);
    for (const SiLattice::Entry &entry : lattice->cells()) {
        const Vector3D &position = entry.second->position();
        if (!m_cutPlanes->contains(static_cast<float>(position[0]), static_cast<float>(position[1]),
                                   static_cast<float>(position[2])))
            continue;
        glPushMatrix();
        glTranslated(position[0], position[1], position[2]);
        glDrawArrays(GL_TRIANGLES, 0, vertexCount(m_unitCellVertices));
        glPopMatrix();
    }
    glDisableClientState(GL_VERTEX_ARRAY);
    DrawBuffer::unbind();
    glPopAttrib();
}

} // namespace Model::Automaton
