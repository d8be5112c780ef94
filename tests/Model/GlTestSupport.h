#pragma once

#include "Model/Object.h"

#include <QGLWidget>
#include <QImage>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

/// A small single-buffered window of OpenGL that shows nothing by itself.
class GlCanvas final : public QGLWidget
{
public:
    /// Pixels along each side.
    static constexpr int Side = 240;

    GlCanvas();

    /// Waits until the window is on the screen and makes its context current.
    bool comeUp();

protected:
    void paintEvent(QPaintEvent *) override {}
    void resizeEvent(QResizeEvent *) override {}
};

/// Draws into one window for all tests of a suite, with an orthographic projection that shows ten
/// pixels a unit and the origin in the middle. Where a test fails, its last picture is left in the
/// working directory.
class GlTest : public ::testing::Test
{
public:
    enum View
    {
        FromAbove,
        FromBelow,
        FromFront, // against y
        FromBack,
        FromLeft, // along x
        FromRight
    };

    using Color = std::array<double, 3>;
    using Rgba = std::array<double, 4>;

    struct Hit
    {
        std::vector<std::uint32_t> names;
        /// Distance along the view direction, in units in front of the origin.
        double nearest;
        double farthest;
    };

protected:
    static constexpr double PixelsPerUnit = 10;
    static constexpr double HalfSide = GlCanvas::Side / PixelsPerUnit / 2;
    static constexpr double HalfDepth = 100;

    static void SetUpTestSuite();
    static void TearDownTestSuite();

    void SetUp() override;
    void TearDown() override;

    static Color background() { return {0.0, 0.0, 0.4}; }

    /// The state in which the 3D view draws: no lighting, blending by alpha set up but not enabled,
    /// depth test, back faces culled. The matrix stack holds one entry.
    static void prepareState();
    void look(View view);
    /// Shows only what lies between these distances in front of the origin.
    void showSlab(double farthest, double nearest);

    /// Clears, draws, and keeps the picture.
    void draw(const std::function<void()> &act);
    /// The last picture's colour at a point, which should not lie on a border between pixels.
    Color colorAt(double x, double y, double z) const;
    void expectColorAt(double x, double y, double z, const Color &expected) const;
    /// The number of pixels of the last picture with that colour, in all of it and between two
    /// points, inclusive, that lie above or beside each other.
    int pixelsOf(const Color &color) const;
    int pixelsOf(const Color &color, const std::array<double, 3> &from,
                 const std::array<double, 3> &to) const;

    /// What is drawn in selection mode, record by record.
    std::vector<Hit> pick(const std::function<void()> &act) const;

    static Color over(const Color &below, const Rgba &color);
    static int integer(unsigned name);
    static std::array<double, 16> modelview();

private:
    std::array<int, 2> pixelAt(double x, double y, double z) const;
    bool isAlike(int column, int row, const Color &color) const;

    static std::unique_ptr<GlCanvas> s_canvas;
    View m_view = FromAbove;
    double m_near = -HalfDepth;
    double m_far = HalfDepth;
    QImage m_picture;
};

/// Keeps what it is asked to draw and the matrices it gets; draws a square of its own color from
/// (x, y, 0) to (x + 1, y + 1, 0), as pick target too.
class RecordingObject final : public Model::Object
{
public:
    struct Call
    {
        bool isPick;
        bool renderObjects;
        bool renderEdges;
        std::array<double, 16> matrix;
        int depth;
    };

    explicit RecordingObject(double x = 0, double y = 0) : m_x(x), m_y(y) {}

    /// Runs at the end of each call.
    void setHook(const std::function<void()> &hook) { m_hook = hook; }
    const std::vector<Call> &calls() const { return m_calls; }
    /// Where the call is kept as well, in the order of all objects.
    void setJournal(std::vector<std::uint32_t> *journal) { m_journal = journal; }

    std::uint32_t objectType() const override { return 77; }
    void draw(bool renderObjects, bool renderEdges) override;
    void drawForPicking() override;
    Object *clone() override { return nullptr; }
    void translate(const Util::Vector3D &) override {}
    void unusedVectorPair(const Util::Vector3D &, const Util::Vector3D &) override {}

private:
    void record(bool isPick, bool renderObjects, bool renderEdges);

    double m_x;
    double m_y;
    std::function<void()> m_hook;
    std::vector<Call> m_calls;
    std::vector<std::uint32_t> *m_journal = nullptr;
};
