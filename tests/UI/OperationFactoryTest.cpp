#include "Support/WindowDriver.h"

#include "Core/Operations/IonImplantation/IonImplantationOperation.h"
#include "Core/Operations/ObjectOperation.h"
#include "Core/Operations/Photolithography/PhotolithographyOperation.h"
#include "Core/Operations/Planarization/PlanarizationOperation.h"
#include "Core/Operations/SelectVolumesOperation.h"
#include "Core/Operations/SiEtching/AtomisticSiWetEtchingOperation.h"
#include "Core/Operations/SiEtching/ContinousWetEtchOperation.h"
#include "Core/Operations/SiOxidation/SimpleSiOxidationOperation.h"
#include "Core/Operations/SpinCoating/SpinCoatingOperation.h"
#include "Core/Operations/Visualization/ChangeTotalVolumeVisualizationOptions.h"
#include "Core/Operations/Visualization/CutCellVolumeOperation.h"
#include "Core/Workspace.h"
#include "UI/MainWindow.h"
#include "UI/OperationFactory.h"
#include "Util/IObserver.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <gtest/gtest.h>

#include <cstdint>

namespace {

using Core::Operations::ObjectOperation;

struct Row
{
    std::uint32_t id;
    const char *name;
    std::uint32_t ownId;
    bool undoable;
};

/// The operations that the program has.
const Row Rows[] = {
    {1, "Copy Objects", 1, true},
    {2, "Create Substrate", 2, true},
    {3, "Ion Implantation", 3, false},
    {4, "Delete Objects", 4, true},
    {6, "Change Visualization", 6, false},
    {7, "Move Objects", 7, true},
    {8, "Extract Film", 8, true},
    {9, "Save document", 9, false},
    {10, "Save Document As", 10, false},
    {11, "Open document", 11, false},
    {12, "Glue Volumes", 12, true},
    {13, "Isotropic Deposition", 13, true},
    {14, "Isotropic Etching", 14, true},
    {15, "Electroplating", 15, true},
    {16, "Change Cut Planes", 2, false},
    {17, "Doping", 17, true},
    {18, "Moore film deposition", 18, true},
    {19, "Moore film deposition", 19, true},
    {20, "Photolithography", 20, false},
    {22, "Planarization", 22, false},
    {23, "Spin Coating", 23, false},
    {24, "Select volumes", 24, false},
    {26, "Simple Si Oxidation", 26, false},
    {27, "Isotropic Deposition", 13, true},
    {28, "BCA Wet Etch", 28, false},
    {29, "Continuous Wet Etch", 29, false},
    {30, "Simple RIE", 30, false},
    {1000, "Extract Model", 1000, false},
};

class OperationFactoryTest : public testing::Test
{
protected:
    Support::WindowDriver m_driver;
    Ui::OperationFactory m_factory{&m_driver.window().presenter()};
};

TEST_F(OperationFactoryTest, EachRowHasItsNameItsOwnIdAndItsPlaceOnTheUndoStack)
{
    for (const Row &row : Rows) {
        const auto operation = m_factory.create(row.id);
        ASSERT_TRUE(operation) << row.id;
        EXPECT_EQ(operation->name(), row.name);
        EXPECT_EQ(operation->id(), row.ownId) << row.id;
        EXPECT_EQ(boost::dynamic_pointer_cast<ObjectOperation>(operation) != nullptr, row.undoable)
            << row.id;
    }
}

class Counter final : public Util::IObserver
{
public:
    explicit Counter(int &count) : m_count(count) {}
    void update() override { ++m_count; }

private:
    int &m_count;
};

TEST_F(OperationFactoryTest, ClassWideSlotsAreOverwrittenAtEachCreation)
{
    using Core::Operations::AtomisticSiWetEtchingOperation;
    using Core::Operations::ChangeTotalVolumeVisualizationOptions;
    using Core::Operations::ContinousWetEtchOperation;
    using Core::Operations::CutCellVolumeOperation;
    using Core::Operations::IonImplantationOperation;
    using Core::Operations::PhotolithographyOperation;
    using Core::Operations::PlanarizationOperation;
    using Core::Operations::SimpleSiOxidationOperation;
    using Core::Operations::SpinCoatingOperation;

    m_driver.trigger("actionCreate_Substrate", {Support::DialogAnswer().accept()});
    const auto select = [this] {
        m_driver.trigger("actionSelect");
        m_driver.click(m_driver.viewCenter() + QPoint(20, -15));
    };
    int updates = 0;
    PlanarizationOperation::setObserver(boost::make_shared<Counter>(updates));
    SpinCoatingOperation::setObserver(boost::make_shared<Counter>(updates));
    IonImplantationOperation::setObserver(boost::make_shared<Counter>(updates));
    PhotolithographyOperation::setObserver(boost::make_shared<Counter>(updates));
    SimpleSiOxidationOperation::setObserver(boost::make_shared<Counter>(updates));
    AtomisticSiWetEtchingOperation::setObserver(boost::make_shared<Counter>(updates));
    ContinousWetEtchOperation::setObserver(boost::make_shared<Counter>(updates));
    CutCellVolumeOperation::setObserver(boost::make_shared<Counter>(updates));
    ChangeTotalVolumeVisualizationOptions::setObserver(boost::make_shared<Counter>(updates));
    for (const char *action :
         {"actionCut_Cell_Volume", "actionChange_Viewing_Options", "actionPlanarization",
          "actionSpin_Coating", "actionIon_Implantation", "actionPhotolithography",
          "actionSi_Oxidation", "actionBCA_Wet_Etching", "actionContinuous_Wet_Etching"}) {
        select();
        m_driver.trigger(action, {Support::DialogAnswer().reject()});
        // One that stays current would take the next selection with it.
        m_driver.press(Qt::Key_Escape);
    }
    using Core::Operations::SelectVolumesOperation;
    SelectVolumesOperation::setObserver(boost::make_shared<Counter>(updates));
    select();
    m_driver.trigger("actionBatch_Run", {Support::DialogAnswer().click("btnClose")});
    EXPECT_EQ(updates, 0);

    // Also an operation of the class that was there before has the new observer.
    const auto earlier = m_factory.create(22);
    PlanarizationOperation::setObserver(boost::make_shared<Counter>(updates));
    select();
    earlier->next();
    EXPECT_EQ(updates, 1);
    select();
    const auto other = m_factory.create(22);
    m_factory.create(22);
    // Not in progress, so the observer of the last one asks nothing.
    other->next();
    EXPECT_EQ(updates, 1);
}

TEST_F(OperationFactoryTest, NumbersOutsideTheTableYieldNoOperation)
{
    for (const std::uint32_t id : {0u, 5u, 21u, 25u, 31u, 32u, 500u, 999u, 1001u, 4294967295u})
        EXPECT_FALSE(m_factory.create(id)) << id;
}

TEST_F(OperationFactoryTest, EachCallMakesANewOperation)
{
    EXPECT_NE(m_factory.create(2), m_factory.create(2));
}

} // namespace
