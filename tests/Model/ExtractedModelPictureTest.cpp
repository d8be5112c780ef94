#include "Model/Document.h"
#include "Model/ModelExtraction/ExtractedModel.h"

#include "GlTestSupport.h"

#include <GL/gl.h>

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

using Model::ModelExtraction::EnvelopeList;
using Model::ModelExtraction::ExtractedModel;
using Model::ModelExtraction::RectangularCuboidEnvelope;

namespace {

constexpr double CellHeight = 0.35355246;
const GlTest::Color outline{0.25, 0.25, 0.25};
const GlTest::Color red{1, 0, 0};
const GlTest::Color yellow{1, 1, 0};

boost::shared_ptr<RectangularCuboidEnvelope> box(std::int32_t x, std::int32_t y, std::int32_t z,
                                                 std::int32_t width, std::int32_t depth,
                                                 std::int32_t height)
{
    return boost::make_shared<RectangularCuboidEnvelope>(x, y, z, width, depth, height, 5);
}

class ExtractedModelPictureTest : public GlTest
{
protected:
    void draw(ExtractedModel &model)
    {
        GlTest::draw([&model] { model.draw(true, false); });
    }
};

TEST_F(ExtractedModelPictureTest, BoxesHaveTheFourteenColorsInTurn)
{
    const Color palette[] = {{1, 0, 0},     {1, 1, 0},       {1, 1, 1},   {0, 1, 0},
                             {0, 1, 1},     {1, 0, 1},       {0, 0, 1},   {0.5, 0, 0},
                             {0.5, 0.5, 0}, {0.5, 0.5, 0.5}, {0, 0.5, 0}, {0, 0.5, 0.5},
                             {0.5, 0, 0.5}, {0, 0, 0.5}};
    EnvelopeList boxes;
    for (int i = 0; i < 30; ++i)
        boxes.push_back(box(-11 + 4 * (i % 6), -11 + 4 * (i / 6), 0, 3, 3, 2));
    ExtractedModel model(boxes);
    for (int round = 0; round < 2; ++round) {
        draw(model);
        for (int i = 0; i < 30; ++i) {
            SCOPED_TRACE(i);
            expectColorAt(-11 + 4 * (i % 6) + 1.55, -11 + 4 * (i / 6) + 1.55, 2 * CellHeight,
                          palette[i % 14]);
        }
    }
}

TEST_F(ExtractedModelPictureTest, BoxesStandWhereTheirCellsAreWithFlatCells)
{
    ExtractedModel model({box(-2, 1, 10, 3, 4, 10)});
    for (const View view : {FromAbove, FromBelow, FromFront, FromBack, FromLeft, FromRight}) {
        SCOPED_TRACE(view);
        look(view);
        draw(model);
        // Just inside and just outside of two opposite corners.
        const double lower[] = {-2, 1, 10 * CellHeight};
        const double upper[] = {1, 5, 20 * CellHeight};
        const double d = 0.25;
        expectColorAt(lower[0] + d, lower[1] + d, lower[2] + d, red);
        expectColorAt(upper[0] - d, upper[1] - d, upper[2] - d, red);
        expectColorAt(lower[0] - d, lower[1] - d, lower[2] - d, background());
        expectColorAt(upper[0] + d, upper[1] + d, upper[2] + d, background());
    }
}

TEST_F(ExtractedModelPictureTest, OutlinesOfAllFacesAreDrawnWhateverTheViewShows)
{
    ExtractedModel model({box(-2, 1, 10, 3, 4, 10)});
    for (const bool objects : {true, false}) {
        for (const bool edges : {true, false}) {
            for (const View view :
                 {FromAbove, FromBelow, FromFront, FromBack, FromLeft, FromRight}) {
                look(view);
                GlTest::draw([&] { model.draw(objects, edges); });
                // The edges of a side of 3 by 3.5 units, the smallest, and what they leave.
                EXPECT_GT(pixelsOf(outline), 110) << view;
                EXPECT_GT(pixelsOf(red), 800) << view;
            }
        }
    }
}

TEST_F(ExtractedModelPictureTest, FacesLookOutwards)
{
    const float light[] = {0, 0, 0, 1};
    glLightfv(GL_LIGHT0, GL_AMBIENT, light);
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, light);
    ExtractedModel model({box(-2, -2, -5, 4, 4, 10)});
    for (const View view : {FromAbove, FromBelow, FromFront, FromBack, FromLeft, FromRight}) {
        SCOPED_TRACE(view);
        look(view);
        GlTest::draw([&] {
            // From the viewer.
            const float direction[] = {0, 0, 1, 0};
            glPushMatrix();
            glLoadIdentity();
            glLightfv(GL_LIGHT0, GL_POSITION, direction);
            glPopMatrix();
            glEnable(GL_COLOR_MATERIAL);
            glEnable(GL_LIGHT0);
            glEnable(GL_LIGHTING);
            model.draw(true, false);
            glDisable(GL_LIGHTING);
            glDisable(GL_LIGHT0);
            glDisable(GL_COLOR_MATERIAL);
        });
        expectColorAt(0.05, 0.05, 0.05, red);
    }
}

TEST_F(ExtractedModelPictureTest, TranslationsMoveThePictureAndNotThePickTarget)
{
    Model::Document document;
    const auto model = boost::make_shared<ExtractedModel>(EnvelopeList{box(0, 0, 0, 2, 2, 10)});
    document.addObject(model);
    const auto pickAll = [&] { return pick([&document] { document.drawForPicking(); }); };
    const std::vector<Hit> before = pickAll();
    ASSERT_EQ(before.size(), 1U);
    EXPECT_EQ(before.front().names, std::vector<std::uint32_t>{model->id()});
    EXPECT_NEAR(before.front().nearest, 10 * CellHeight, 0.01);
    EXPECT_NEAR(before.front().farthest, 0, 0.01);
    model->translate({4, 0, 3});
    model->translate({1, -6, 3});
    EXPECT_EQ(model->offset(), (std::array<float, 3>{5, -6, 6}));
    draw(*model);
    expectColorAt(5.55, -5.45, 0, red);
    expectColorAt(0.55, 0.55, 0, background());
    const std::vector<Hit> after = pickAll();
    ASSERT_EQ(after.size(), 1U);
    EXPECT_EQ(after.front().nearest, before.front().nearest);
    EXPECT_EQ(after.front().farthest, before.front().farthest);
}

TEST_F(ExtractedModelPictureTest, BothDrawsLeaveMatrixAndArraysAsTheyWere)
{
    ExtractedModel model({box(0, 0, 0, 2, 2, 10)});
    model.translate({1, 2, 3});
    const auto matrix = modelview();
    const int depth = integer(GL_MODELVIEW_STACK_DEPTH);
    GlTest::draw([&] {
        model.draw(true, true);
        model.drawForPicking();
    });
    EXPECT_EQ(modelview(), matrix);
    EXPECT_EQ(integer(GL_MODELVIEW_STACK_DEPTH), depth);
    EXPECT_FALSE(glIsEnabled(GL_VERTEX_ARRAY));
    EXPECT_FALSE(glIsEnabled(GL_NORMAL_ARRAY));
    EXPECT_EQ(glGetError(), unsigned{GL_NO_ERROR});
}

TEST_F(ExtractedModelPictureTest, ModelWithoutBoxesDrawsNothing)
{
    ExtractedModel model((EnvelopeList()));
    draw(model);
    EXPECT_EQ(pixelsOf(background()), GlCanvas::Side * GlCanvas::Side);
    EXPECT_TRUE(pick([&model] { model.drawForPicking(); }).empty());
}

TEST_F(ExtractedModelPictureTest, NeighboursShareAnOutline)
{
    ExtractedModel model({box(-4, 0, 0, 4, 4, 4), box(0, 0, 0, 4, 4, 4)});
    draw(model);
    expectColorAt(-2.05, 2.05, 4 * CellHeight, red);
    expectColorAt(2.05, 2.05, 4 * CellHeight, yellow);
    EXPECT_GT(pixelsOf(outline, {-0.5, 2.05, 4 * CellHeight}, {0.5, 2.05, 4 * CellHeight}), 0);
}

} // namespace
