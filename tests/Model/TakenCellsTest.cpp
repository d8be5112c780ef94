#include "Model/Automaton/TakenCells.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <stdexcept>
#include <vector>

using Model::Automaton::TakenCells;
using Model::Automaton::TotalVolume;

namespace {

class TakenCellsTest : public ::testing::TestWithParam<TakenCells::Array>
{
protected:
    Model::Automaton::Voxel *take()
    {
        return GetParam() == TakenCells::Voxels ? m_volume->voxels() : m_volume->nextVoxels();
    }
    void release()
    {
        if (GetParam() == TakenCells::Voxels)
            m_volume->releaseVoxels();
        else
            m_volume->releaseNextVoxels();
    }

    const boost::shared_ptr<TotalVolume> m_volume =
        Support::makeVolume(Support::Grid{2, 2, 2}, std::vector<std::uint32_t>(8, 1));
};

} // namespace

TEST_P(TakenCellsTest, ArrayIsTheOneThatWasAskedFor)
{
    const auto *cells = take();
    release();
    EXPECT_EQ(TakenCells(*m_volume, GetParam()).cells(), cells);
}

TEST_P(TakenCellsTest, OthersWaitUntilTheScopeEnds)
{
    std::promise<void> started;
    std::future<void> other;
    {
        const TakenCells cells(*m_volume, GetParam());
        other = std::async(std::launch::async, [&] {
            started.set_value();
            take();
            release();
        });
        started.get_future().wait();
        EXPECT_EQ(other.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    }
    other.wait();
}

TEST_P(TakenCellsTest, TheOtherArrayStaysFree)
{
    const TakenCells cells(*m_volume, GetParam());
    // Would never return otherwise.
    const TakenCells others(*m_volume, GetParam() == TakenCells::Voxels ? TakenCells::NextVoxels
                                                                        : TakenCells::Voxels);
    EXPECT_NE(others.cells(), cells.cells());
}

TEST_P(TakenCellsTest, CellsAreGivenBackWhenARunFails)
{
    EXPECT_THROW(
        {
            const TakenCells cells(*m_volume, GetParam());
            throw std::runtime_error("no memory");
        },
        std::runtime_error);
    // Would never return otherwise.
    EXPECT_NE(take(), nullptr);
    release();
}

INSTANTIATE_TEST_SUITE_P(EachArray, TakenCellsTest,
                         ::testing::Values(TakenCells::Voxels, TakenCells::NextVoxels));
