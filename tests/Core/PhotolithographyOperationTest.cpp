#include "Core/Operations/Photolithography/PhotolithographyOperation.h"

#include "PhotolithographyRule.h"
#include "PlainProcessSuite.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

using Core::Operations::PhotolithographyOperation;
using Model::Automaton::TotalVolume;
using PhotolithographyRule::isOpaque;
using PhotolithographyRule::Mask;
using PhotolithographyRule::negative;
using PhotolithographyRule::plainMask;
using PhotolithographyRule::positive;

namespace {

constexpr Support::Grid grid{3, 4, 8};

/// Three pixels along x and two along y; opaque are (0, 1), (1, 0) and (2, 0).
const Mask wide = {{false, true, true, false, true, false}, 3, 2};
/// Two pixels along x and four along y; opaque are (0, 1) and (1, 3).
const Mask narrow = {{false, true, false, false, false, false, false, true}, 2, 4};
const Mask opaque = plainMask(3, 4, true);

Mask topOverlay(const TotalVolume &volume)
{
    Mask mask;
    mask.bits = volume.topMask();
    volume.topMaskExtent(mask.width, mask.height);
    return mask;
}
Mask bottomOverlay(const TotalVolume &volume)
{
    Mask mask;
    mask.bits = volume.bottomMask();
    volume.bottomMaskExtent(mask.width, mask.height);
    return mask;
}

/// A film in the air over a floor, where it is.
std::vector<std::uint32_t> film(std::uint32_t material,
                                const std::function<bool(std::uint32_t, std::uint32_t)> &isThere)
{
    return Support::materialsBy(grid, [&](auto x, auto y, auto z) {
        return z == 0 ? 2U : z > 1 && z < 6 && isThere(x, y) ? material : 0U;
    });
}
std::vector<std::uint32_t> wholeFilm(std::uint32_t material)
{
    return film(material, [](auto, auto) { return true; });
}

class PhotolithographyOperationTest : public Fakes::PlainProcessSuite<PhotolithographyOperation>
{
protected:
    PhotolithographyOperationTest()
        : PlainProcessSuite({"Photolithography", 20, "Photolithography: Cell volume selected.",
                             "Photolithography: Select a cell volume and press Enter/Return.",
                             "Photolithography: Operation finished.",
                             "Photolithography: Operation Canceled!", grid, wholeFilm(positive),
                             wholeFilm(0)},
                            develop(positive))
    {}

    static Answer develop(std::uint32_t material)
    {
        return [=](PhotolithographyOperation &operation) {
            operation.setMaterial(material);
            operation.end();
        };
    }
    /// As the dialog does it.
    static Answer accept(std::uint32_t material, const Mask &bottom, const Mask &top)
    {
        return [=](PhotolithographyOperation &operation) {
            operation.setMaterial(material);
            setBottom(operation, bottom);
            setTop(operation, top);
            operation.end();
        };
    }
    static void setTop(PhotolithographyOperation &operation, const Mask &mask)
    {
        operation.setTopMask(mask.bits, mask.width, mask.height);
    }
    static void setBottom(PhotolithographyOperation &operation, const Mask &mask)
    {
        operation.setBottomMask(mask.bits, mask.width, mask.height);
    }

    /// Runs on a film of its own, and expects that such columns of it are left.
    void expectFilm(std::uint32_t material, const Mask &bottom, const Mask &top,
                    const std::function<bool(std::uint32_t, std::uint32_t)> &isThere)
    {
        const Volume volume = Support::makeVolume(grid, wholeFilm(material));
        run(volume, accept(material, bottom, top));
        Fakes::expectMaterials(*volume, film(material, isThere));
    }
    static void expectOverlays(const Volume &volume, const Mask &bottom, const Mask &top)
    {
        EXPECT_EQ(bottomOverlay(*volume), bottom);
        EXPECT_EQ(topOverlay(*volume), top);
    }
};

} // namespace

PROCESS_OPERATION_TESTS(PhotolithographyOperationTest)
PLAIN_PROCESS_TESTS(PhotolithographyOperationTest)

TEST_F(PhotolithographyOperationTest, HasTheNameAndIdOfItsMenuEntry)
{
    const PhotolithographyOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Photolithography");
    EXPECT_EQ(operation.id(), 20U);
    EXPECT_FALSE(isUndoable);
}

TEST_F(PhotolithographyOperationTest, AllOfTheClassTellTheObserverThatWasSetLast)
{
    ASSERT_TRUE(isObserverClassWide);
    observerTold();
}

TEST_F(PhotolithographyOperationTest, ObserverStaysWithTheClassUntilItIsReplaced)
{
    replacedObserverIsReleased();
}

TEST_F(PhotolithographyOperationTest, EndNeedsTheVolumeAndTheMaterial)
{
    // The observer is no step here.
    for (const bool observed : {false, true})
        for (int count = 0; count <= 3; ++count) {
            SCOPED_TRACE(::testing::Message()
                         << (observed ? "observed, " : "alone, ") << count << " materials");
            m_observed = observed;
            const Volume volume = addSample();
            activateOn(volume);
            for (int i = 0; i < count; ++i)
                current()->setMaterial(positive);
            expectEnd(volume, count > 0);
        }
}

TEST_F(PhotolithographyOperationTest, MasksAreNoSteps)
{
    for (const bool observed : {false, true}) {
        m_observed = observed;
        const Volume volume = addSample();
        activateOn(volume);
        for (int i = 0; i < 3; ++i) {
            setBottom(*current(), wide);
            setTop(*current(), narrow);
        }
        expectEnd(volume, false);
    }
}

TEST_F(PhotolithographyOperationTest, MaterialGivenAtThePromptIsAStepToo)
{
    activate();
    current()->setMaterial(positive);
    select({m_volume});
    log().clear();
    type("");
    EXPECT_EQ(log(), Fakes::Log{});
    expectEnd(m_volume, false);
}

TEST_F(PhotolithographyOperationTest, MaterialsWithoutAVolumeAreNotEnough)
{
    for (int count = 1; count <= 3; ++count) {
        activate();
        for (int i = 0; i < count; ++i)
            current()->setMaterial(positive);
        expectEnd(m_volume, false);
    }
}

TEST_F(PhotolithographyOperationTest, ValuesMayComeInAnyOrder)
{
    const auto material = [](auto &operation) { operation.setMaterial(positive); };
    const auto bottom = [](auto &operation) { setBottom(operation, wide); };
    const auto top = [](auto &operation) { setTop(operation, narrow); };
    using Setter = std::function<void(PhotolithographyOperation &)>;
    const std::vector<std::vector<Setter>> orders = {
        {material, bottom, top}, {material, top, bottom}, {bottom, material, top},
        {bottom, top, material}, {top, material, bottom}, {top, bottom, material}};
    const auto left = film(
        positive, [](auto x, auto y) { return isOpaque(wide, x, y) && isOpaque(narrow, x, y); });
    for (const std::vector<Setter> &order : orders) {
        const Volume volume = addSample();
        run(volume, [&](PhotolithographyOperation &operation) {
            for (const Setter &set : order)
                set(operation);
            operation.end();
        });
        Fakes::expectMaterials(*volume, left);
        expectOverlays(volume, {}, {});
    }
}

TEST_F(PhotolithographyOperationTest, LaterValueWins)
{
    const Volume volume = addSample();
    run(volume, [](PhotolithographyOperation &operation) {
        operation.setMaterial(silicon);
        setBottom(operation, wide);
        setTop(operation, narrow);
        accept(positive, opaque, wide)(operation);
    });
    Fakes::expectMaterials(*volume,
                           film(positive, [](auto x, auto y) { return isOpaque(wide, x, y); }));
}

TEST_F(PhotolithographyOperationTest, EachMaskKeepsTheLightOfItsSide)
{
    // What is left is dark from both sides.
    expectFilm(positive, {}, {}, [](auto, auto) { return false; });
    expectFilm(positive, opaque, {}, [](auto, auto) { return false; });
    expectFilm(positive, {}, opaque, [](auto, auto) { return false; });
    expectFilm(positive, opaque, opaque, [](auto, auto) { return true; });
    expectFilm(positive, opaque, wide, [](auto x, auto y) { return isOpaque(wide, x, y); });
    expectFilm(positive, narrow, opaque, [](auto x, auto y) { return isOpaque(narrow, x, y); });
}

TEST_F(PhotolithographyOperationTest, TopMaskIsThatOfTheLightFromAbove)
{
    const auto onFloor = [](std::uint32_t height, std::uint32_t material) {
        return Support::materialsBy(grid, [=](auto, auto, auto z) {
            return z < 2 ? 1U : z < height ? material : 0U;
        });
    };
    const Volume volume = Support::makeVolume(grid, onFloor(6, positive));
    run(volume, accept(positive, {}, opaque));
    Fakes::expectMaterials(*volume, onFloor(6, positive));
    run(volume, accept(positive, opaque, {}));
    Fakes::expectMaterials(*volume, onFloor(2, positive));
}

TEST_F(PhotolithographyOperationTest, NegativeResistGoesWhereAPixelIsOpaque)
{
    expectFilm(negative, {}, {}, [](auto, auto) { return true; });
    expectFilm(negative, wide, {}, [](auto x, auto y) { return !isOpaque(wide, x, y); });
    expectFilm(negative, {}, narrow, [](auto x, auto y) { return !isOpaque(narrow, x, y); });
    expectFilm(negative, wide, narrow,
               [](auto x, auto y) { return !isOpaque(wide, x, y) && !isOpaque(narrow, x, y); });
}

// What the dialog hands over of a mask that was removed.
TEST_F(PhotolithographyOperationTest, MaskOfNoHeightIsNoMask)
{
    for (const Mask &removed : {Mask{{}, 3, 0}, Mask{{}, 70000, 0}}) {
        expectFilm(positive, removed, removed, [](auto, auto) { return false; });
        expectFilm(negative, removed, removed, [](auto, auto) { return true; });
    }
}

TEST_F(PhotolithographyOperationTest, MaskIsOverTheVolumeAtOnce)
{
    activateOn(m_volume);
    log().clear();
    setTop(*current(), narrow);
    EXPECT_EQ(log(), Fakes::Log{"view updated"});
    expectOverlays(m_volume, {}, narrow);
    log().clear();
    setBottom(*current(), wide);
    EXPECT_EQ(log(), Fakes::Log{"view updated"});
    expectOverlays(m_volume, wide, narrow);
    // Also one that replaces another, and one that is taken away.
    setTop(*current(), opaque);
    expectOverlays(m_volume, wide, opaque);
    log().clear();
    setBottom(*current(), {});
    EXPECT_EQ(log(), Fakes::Log{"view updated"});
    expectOverlays(m_volume, {}, opaque);
    expectOverlays(m_other, {}, {});
    Fakes::expectMaterials(*m_volume, wholeFilm(positive));
}

TEST_F(PhotolithographyOperationTest, OverlayIsThereWhenTheViewsAreUpdated)
{
    std::vector<Mask> seen;
    activateOn(m_volume);
    watch([&](const std::string &) {
        seen.push_back(bottomOverlay(*m_volume));
        seen.push_back(topOverlay(*m_volume));
    });
    setBottom(*current(), wide);
    setTop(*current(), narrow);
    watch(nullptr);
    EXPECT_EQ(seen, (std::vector<Mask>{wide, {}, wide, narrow}));
}

TEST_F(PhotolithographyOperationTest, OverlayHasExtentsThatDoNotFitTheBitsToo)
{
    const Mask odd = {{true, false, true}, 7, 5};
    activateOn(m_volume);
    setBottom(*current(), odd);
    setTop(*current(), odd);
    expectOverlays(m_volume, odd, odd);
}

TEST_F(PhotolithographyOperationTest, MasksGivenAtThePromptAreKeptForTheRunAlone)
{
    activate();
    log().clear();
    setBottom(*current(), opaque);
    setTop(*current(), wide);
    EXPECT_EQ(log(), Fakes::Log{});
    expectOverlays(m_volume, {}, {});
    select({m_volume});
    type("");
    EXPECT_EQ(log(),
              (Fakes::Log{"selection mode changed", "view updated", m_facts.selected, "dialog"}));
    expectOverlays(m_volume, {}, {});
    current()->setMaterial(positive);
    expectEnd(m_volume, true);
    Fakes::expectMaterials(*m_volume,
                           film(positive, [](auto x, auto y) { return isOpaque(wide, x, y); }));
}

TEST_F(PhotolithographyOperationTest, EndTakesBothOverlaysAwayBeforeTheViewsAreUpdated)
{
    activateOn(m_volume);
    current()->setMaterial(positive);
    setBottom(*current(), wide);
    setTop(*current(), narrow);
    int looks = 0;
    watch([&](const std::string &entry) {
        if (entry != "view updated")
            return;
        ++looks;
        expectOverlays(m_volume, {}, {});
    });
    expectEnd(m_volume, true);
    watch(nullptr);
    EXPECT_EQ(looks, 2);
    expectOverlays(m_volume, {}, {});
}

TEST_F(PhotolithographyOperationTest, EndTakesOverlaysOfEarlierOnesAwayToo)
{
    m_volume->setTopMask(narrow.bits, narrow.width, narrow.height);
    m_volume->setBottomMask(wide.bits, wide.width, wide.height);
    m_other->setTopMask(wide.bits, wide.width, wide.height);
    run(m_volume);
    // They were no masks of this one.
    Fakes::expectMaterials(*m_volume, wholeFilm(0));
    expectOverlays(m_volume, {}, {});
    expectOverlays(m_other, {}, wide);
}

TEST_F(PhotolithographyOperationTest, CancelLeavesTheOverlays)
{
    activateOn(m_volume);
    setBottom(*current(), wide);
    setTop(*current(), narrow);
    log().clear();
    workspace().cancelCurrent();
    EXPECT_EQ(log(), cancelLog());
    expectOverlays(m_volume, wide, narrow);
    // So does an end that cancels.
    activateOn(m_other);
    setTop(*current(), wide);
    expectEnd(m_other, false);
    expectOverlays(m_other, {}, wide);
    // And another one on the same volume, which is not the one that set them.
    activateOn(m_volume);
    workspace().cancelCurrent();
    expectOverlays(m_volume, wide, narrow);
}

TEST_F(PhotolithographyOperationTest, FilmThatIsNotThereChangesNoCellAndTakesTheOverlaysAway)
{
    for (const std::uint32_t material : {0U, 7U, negative}) {
        const Volume volume = addSample();
        log().clear();
        run(volume, accept(material, wide, narrow));
        EXPECT_EQ(countOf(m_facts.finished), 1);
        Fakes::expectMaterials(*volume, wholeFilm(positive));
        expectOverlays(volume, {}, {});
        EXPECT_EQ(workspace().objectRecords().lastOperation(volume->id()), 20U);
    }
}

TEST_F(PhotolithographyOperationTest, SiliconAloneMakesTheLatticeStale)
{
    for (const std::uint32_t material : {0U, 2U, positive, negative})
        expectLattice(develop(material), false);
    // Whether or not there is any.
    expectLattice(develop(silicon), true);
}
