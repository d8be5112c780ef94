#pragma once

#include "DistanceFrontRuns.h"
#include "LayerFrontRule.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <QMessageLogContext>
#include <QMutex>
#include <QMutexLocker>
#include <QString>
#include <QtGlobal>

#include <boost/shared_ptr.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// A volume to run engines on that have no metric, and what they leave in it.
namespace LayerFrontRule {

using DistanceFrontRule::BusyPool;
using DistanceFrontRule::randomMaterials;
using Model::Automaton::TotalVolume;

/// Keeps what is written to the log, by any thread, from the screen.
class LogLines final
{
public:
    LogLines() : m_before(qInstallMessageHandler(keep)) { s_lines.clear(); }
    ~LogLines() { qInstallMessageHandler(m_before); }
    LogLines(const LogLines &) = delete;
    LogLines &operator=(const LogLines &) = delete;

    /// In the order of writing; what is not for debugging is told so.
    static std::vector<std::string> lines()
    {
        const QMutexLocker lock(&s_mutex);
        return s_lines;
    }

private:
    static void keep(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        const QMutexLocker lock(&s_mutex);
        s_lines.push_back((type == QtDebugMsg ? "" : "not for debugging: ") + text.toStdString());
    }

    static inline QMutex s_mutex;
    static inline std::vector<std::string> s_lines;

    QtMessageHandler m_before;
};

/// Cells with these materials that earlier processes left behind: every other field has a value of
/// its own, which a layer by layer process has to keep.
inline Cells leftovers(const Materials &materials)
{
    return DistanceFrontRule::leftoversIn(materials, 1);
}
inline Cells nextLeftovers(const Materials &materials)
{
    return DistanceFrontRule::leftoversIn(materials, 1000000);
}

inline Materials materialsOf(const Cells &cells)
{
    Materials materials;
    for (const Cell &cell : cells)
        materials.push_back(cell.material);
    return materials;
}

/// The cells with other materials.
inline Cells withMaterials(Cells cells, const Materials &materials)
{
    for (std::size_t i = 0; i < cells.size(); ++i)
        cells[i].material = materials[i];
    return cells;
}

/// Whether the cells agree one by one in every field; tells the first that does not.
inline testing::AssertionResult agree(const Support::Grid &grid, const Cells &actual,
                                      const Cells &expected)
{
    const auto isSame = [](const Cell &a, const Cell &b) {
        return DistanceFrontRule::hasSameMaterialAndFront(a, b) &&
               DistanceFrontRule::hasSameAtoms(a, b);
    };
    std::size_t count = 0;
    std::size_t first = 0;
    for (std::size_t i = expected.size(); i-- > 0;) {
        if (!isSame(actual[i], expected[i])) {
            ++count;
            first = i;
        }
    }
    if (count == 0)
        return testing::AssertionSuccess();
    const Place at = placeOf(grid, int(first));
    return testing::AssertionFailure()
           << count << " of " << grid.sizeX << " x " << grid.sizeY << " x " << grid.sizeZ
           << " cells differ; first (" << at.x << ", " << at.y << ", " << at.z
           << "): " << actual[first] << "; by the rule " << expected[first];
}

/// A volume full of leftovers, and what it holds after a run.
class Sample final
{
public:
    /// Constructs an engine on the volume, calls the second between construction and run, and runs.
    using Engine = std::function<void(TotalVolume *, const std::function<void()> &)>;

    Sample(const Support::Grid &grid, const Materials &materials)
        : m_grid(grid),
          m_volume(Support::makeVolume(grid, materials))
    {
        m_voxelsArray = m_volume->voxels();
        m_nextVoxelsArray = m_volume->nextVoxels();
        DistanceFrontRule::write(m_voxelsArray, leftovers(materials));
        DistanceFrontRule::write(m_nextVoxelsArray, nextLeftovers(materials));
        release();
    }

    /// Runs the engine with so many threads in the pool. Both arrays can be taken afterwards, or
    /// this would never return.
    void run(
        int threads, const Engine &engine, const std::function<void()> &inBetween = [] {})
    {
        const Support::PoolThreads pool(threads);
        {
            const LogLines log;
            engine(m_volume.get(), inBetween);
            m_logLines = LogLines::lines();
        }
        const Model::Automaton::Voxel *voxels = m_volume->voxels();
        const Model::Automaton::Voxel *nextVoxels = m_volume->nextVoxels();
        m_isInPlace = voxels == m_voxelsArray && nextVoxels == m_nextVoxelsArray;
        m_voxels = DistanceFrontRule::read(voxels, m_grid.cells());
        m_nextVoxels = DistanceFrontRule::read(nextVoxels, m_grid.cells());
        release();
    }

    const Cells &voxels() const { return m_voxels; }
    const Cells &nextVoxels() const { return m_nextVoxels; }
    Materials materials() const { return materialsOf(m_voxels); }
    Materials nextMaterials() const { return materialsOf(m_nextVoxels); }
    const std::vector<std::string> &logLines() const { return m_logLines; }
    /// The volume names its two arrays as at the start.
    bool isInPlace() const { return m_isInPlace; }

private:
    void release()
    {
        m_volume->releaseVoxels();
        m_volume->releaseNextVoxels();
    }

    Support::Grid m_grid;
    boost::shared_ptr<TotalVolume> m_volume;
    Model::Automaton::Voxel *m_voxelsArray = nullptr;
    Model::Automaton::Voxel *m_nextVoxelsArray = nullptr;
    bool m_isInPlace = false;
    Cells m_voxels;
    Cells m_nextVoxels;
    std::vector<std::string> m_logLines;
};

/// Expects that the construction of an engine changes no cell and takes no array. `construct` gets
/// the volume, constructs, calls the second while the engine lives, and does not run it.
inline void expectConstructionLeavesTheVolumeAlone(const Support::Grid &grid,
                                                   const Materials &materials,
                                                   const Sample::Engine &construct)
{
    Sample sample(grid, materials);
    sample.run(2, [&](TotalVolume *volume, auto &) {
        construct(volume, [&] {
            // Taken here, or this would never return.
            const Cells voxels = DistanceFrontRule::read(volume->voxels(), grid.cells());
            const Cells nextVoxels = DistanceFrontRule::read(volume->nextVoxels(), grid.cells());
            volume->releaseVoxels();
            volume->releaseNextVoxels();
            EXPECT_TRUE(agree(grid, voxels, leftovers(materials)));
            EXPECT_TRUE(agree(grid, nextVoxels, nextLeftovers(materials)));
        });
    });
    EXPECT_TRUE(agree(grid, sample.voxels(), leftovers(materials)));
    EXPECT_TRUE(agree(grid, sample.nextVoxels(), nextLeftovers(materials)));
    EXPECT_TRUE(sample.logLines().empty());
}

} // namespace LayerFrontRule
