#pragma once

#include "Support/Volumes.h"
#include "Support/WindowDriver.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"

#include <QAction>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

/// Processes from the menu on a small wafer: 12 layers of silicon across a volume of 40 x 30 x 50
/// cells.
class WaferRoad : public testing::Test
{
protected:
    static constexpr std::uint32_t Silicon = 1;
    static constexpr std::uint32_t Gold = 9;

    WaferRoad()
    {
        m_driver.trigger("actionCreate_Substrate", {Support::DialogAnswer()
                                                        .type("sbxTotalWidth", "40")
                                                        .type("sbxTotalLength", "30")
                                                        .type("sbxTotalHeight", "50")
                                                        .type("sbxSubsHeight", "12")
                                                        .accept()});
    }

    /// Empties the document, then makes a volume of the same size that holds a block of silicon of
    /// 12 layers: so wide, in the middle of x, and so far above the floor.
    void createBlock(int width, int floor)
    {
        m_driver.trigger("actionNew", {Support::DialogAnswer().accept()});
        m_driver.trigger("actionCreate_Substrate",
                         {Support::DialogAnswer()
                              .type("sbxTotalWidth", "40")
                              .type("sbxTotalLength", "30")
                              .type("sbxTotalHeight", "50")
                              .type("sbxSubsWidth", QString::number(width))
                              .type("sbxSubsHeight", "12")
                              .type("sbxSubsX", QString::number((40 - width) / 2))
                              .type("sbxSubsZ", QString::number(floor))
                              .accept()});
    }

    /// Selects the wafer and starts the menu entry.
    void run(const char *action, const Support::DialogAnswer &answer)
    {
        m_driver.trigger("actionSelect");
        pick();
        m_driver.trigger(action, {answer});
    }
    /// With the selection mode on.
    void pick() { m_driver.click(m_driver.viewCenter() + QPoint(20, -15)); }

    void expectCells(const Support::MaterialRule &rule)
    {
        const auto wanted = Support::materialsBy(m_grid, rule);
        EXPECT_TRUE(m_driver.materials() == wanted);
        EXPECT_TRUE(Support::nextMaterialsOf(*m_driver.volumes().front()) == wanted);
    }
    /// Across the whole wafer: silicon up to a height, then the film.
    void expectLayers(std::uint32_t silicon, std::uint32_t film = 0, std::uint32_t material = Gold)
    {
        expectCells([=](std::uint32_t, std::uint32_t, std::uint32_t z) {
            return z < silicon ? Silicon : z < silicon + film ? material : 0u;
        });
    }
    std::uint32_t cell(std::uint32_t x, std::uint32_t y, std::uint32_t z)
    {
        return m_driver.materials()[m_grid.index(x, y, z)];
    }

    QStringList lastLines(int count)
    {
        const QStringList lines = m_driver.consoleLines();
        return lines.mid(lines.size() - count);
    }
    QString undoText() { return m_driver.action("actionUndo").text(); }
    bool idle() { return !m_driver.workspace().currentOperation(); }

    Support::WindowDriver m_driver;
    const Support::Grid m_grid{40, 30, 50};
};
