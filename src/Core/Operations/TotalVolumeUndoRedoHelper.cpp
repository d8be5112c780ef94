#include "Core/Operations/TotalVolumeUndoRedoHelper.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"

#include <QDebug>
#include <QElapsedTimer>

#include <fstream>
#include <limits>
#include <locale>
#include <utility>

namespace Core::Operations {

using Model::Automaton::TotalVolume;
using Model::Automaton::Voxel;

namespace {

/// Passes over blanks within the line; whether anything follows in it.
bool skipBlanks(std::istream &stream)
{
    while (stream.peek() == ' ' || stream.peek() == '\t')
        stream.get();
    return stream.peek() != '\n' && stream.peek() != '\r' && !stream.eof();
}

/// Moves behind tag and number of the record looked for; false if the stream ends first.
bool findRecord(std::istream &stream, const std::string &tag, std::uint32_t instanceId)
{
    std::string token;
    while (stream >> token) {
        std::uint32_t instance = 0;
        if (token == tag && skipBlanks(stream) && stream >> instance && instance == instanceId)
            return true;
        // What is no number leaves the stream in a failed state; the line is skipped all the same.
        stream.clear();
        stream.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    }
    return false;
}

} // namespace

TotalVolumeUndoRedoHelper::TotalVolumeUndoRedoHelper(std::string tag, std::uint32_t instanceId,
                                                     Workspace *workspace)
    : m_tag(std::move(tag)),
      m_instanceId(instanceId),
      m_workspace(workspace)
{}

void TotalVolumeUndoRedoHelper::saveState(TotalVolume & /*volume*/) {}

void TotalVolumeUndoRedoHelper::loadState(const std::string &fileName, TotalVolume &volume) const
{
    QElapsedTimer timer;
    timer.start();
    std::fstream file(fileName, std::ios::in | std::ios::out);
    if (file.is_open()) {
        file.imbue(std::locale::classic());
        Voxel *voxels = volume.voxels();
        Voxel *nextVoxels = volume.nextVoxels();
        if (findRecord(file, m_tag, m_instanceId)) {
            const std::uint32_t cells = volume.sizeX() * volume.sizeY() * volume.sizeZ();
            std::int32_t material = 0;
            for (std::uint32_t i = 0; i < cells && file >> material; ++i) {
                voxels[i].setMaterial(static_cast<std::uint32_t>(material));
                nextVoxels[i].setMaterial(static_cast<std::uint32_t>(material));
            }
        }
        volume.releaseVoxels();
        volume.releaseNextVoxels();
        file.close();
    }
    qDebug().nospace() << "Time to load: " << timer.elapsed() << " ms";
}

void TotalVolumeUndoRedoHelper::loadUndoState(TotalVolume &volume) const
{
    loadState(m_workspace->archives().undoFileName(), volume);
    volume.painter().rebuild();
}

void TotalVolumeUndoRedoHelper::loadRedoState(TotalVolume &volume) const
{
    loadState(m_workspace->archives().redoFileName(), volume);
    volume.painter().rebuild();
}

} // namespace Core::Operations
