#include "Model/ModelExtraction/ExtractedModel.h"

#include "Model/Automaton/DirectFaceBuilder.h"

#include <GL/gl.h>

#include <utility>

namespace Model::ModelExtraction {

namespace {

constexpr std::int32_t PaletteSize = 14;
constexpr float Palette[PaletteSize][3] = {
    {1.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 0.0f}, {1.0f, 1.0f, 1.0f}, {0.0f, 1.0f, 0.0f},
    {0.0f, 1.0f, 1.0f}, {1.0f, 0.0f, 1.0f}, {0.0f, 0.0f, 1.0f}, {0.5f, 0.0f, 0.0f},
    {0.5f, 0.5f, 0.0f}, {0.5f, 0.5f, 0.5f}, {0.0f, 0.5f, 0.0f}, {0.0f, 0.5f, 0.5f},
    {0.5f, 0.0f, 0.5f}, {0.0f, 0.0f, 0.5f},
};
constexpr float OutlineShade = 0.25f;
/// How far faces stand back behind the outlines that lie in them, in steps of the depth buffer. With
/// 64 parts of the outlines were still hidden by the software renderer.
constexpr float OutlineOffset = 512.0f;

/// Drawing units of a cell along x, y and z. A model does not know its volume: these are the
/// proportions of a crystal's cell.
constexpr float CellSize[3] = {1.0f, 1.0f, 0.35355246f};

constexpr GLsizei FaceCorners = 4;
constexpr GLsizei BoxCorners = RectangularCuboidEnvelope::FaceCount * FaceCorners;

} // namespace

ExtractedModel::ExtractedModel(EnvelopeList envelopes) : m_envelopes(std::move(envelopes))
{
    const std::size_t length = m_envelopes.size() * BoxCorners * 3;
    m_vertices.reserve(length);
    m_normals.reserve(length);
    for (const auto &envelope : m_envelopes) {
        const std::int32_t corner[3] = {envelope->x(), envelope->y(), envelope->z()};
        const std::int32_t extent[3] = {envelope->width(), envelope->depth(), envelope->height()};
        for (const auto &shape : Automaton::DirectFaceBuilder::faceShapes()) {
            for (const std::uint8_t(&offset)[3] : shape.corners) {
                for (unsigned axis = 0; axis < 3; ++axis) {
                    m_vertices.push_back(static_cast<float>(corner[axis]) * CellSize[axis] +
                                         static_cast<float>(offset[axis]) *
                                             (static_cast<float>(extent[axis]) * CellSize[axis]));
                    m_normals.push_back(shape.normal[axis]);
                }
            }
        }
    }
}

std::uint32_t ExtractedModel::objectType() const
{
    return ExtractedModelType;
}

void ExtractedModel::draw(bool, bool)
{
    glPushMatrix();
    glTranslatef(m_offset[0], m_offset[1], m_offset[2]);
    drawEnvelopes();
    glPopMatrix();
}

void ExtractedModel::drawForPicking()
{
    glPushMatrix();
    drawEnvelopes();
    glPopMatrix();
}

void ExtractedModel::drawEnvelopes()
{
    const auto boxes = static_cast<GLint>(m_envelopes.size());
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, m_vertices.data());
    glNormalPointer(GL_FLOAT, 0, m_normals.data());
    glPushAttrib(GL_POLYGON_BIT);
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(1.0f, OutlineOffset);
    m_colorIndex = 0;
    for (GLint box = 0; box < boxes; ++box) {
        glColor3fv(Palette[m_colorIndex]);
        m_colorIndex = (m_colorIndex + 1) % PaletteSize;
        glDrawArrays(GL_QUADS, box * BoxCorners, BoxCorners);
    }
    glPopAttrib();
    glColor3f(OutlineShade, OutlineShade, OutlineShade);
    for (GLint first = 0; first < boxes * BoxCorners; first += FaceCorners)
        glDrawArrays(GL_LINE_LOOP, first, FaceCorners);
    glPopClientAttrib();
}

ExtractedModel *ExtractedModel::clone()
{
    return nullptr;
}

void ExtractedModel::translate(const Util::Vector3D &offset)
{
    for (unsigned axis = 0; axis < 3; ++axis)
        m_offset[axis] += static_cast<float>(offset[axis]);
}

void ExtractedModel::unusedVectorPair(const Util::Vector3D &, const Util::Vector3D &) {}

} // namespace Model::ModelExtraction
