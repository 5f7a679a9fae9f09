// Picking on the driver, in both modes, and the search of hit records.

#include "3dPort/Calls.h"

#include "Graphics/3dPort/TpickBuffer.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"

#include <gmock/gmock.h>

#include <array>
#include <memory>
#include <set>
#include <tuple>

namespace {

using Names = std::set<unsigned>;
enum class Visual { kSingle, kDouble, kMultisampled };

/** A port of 100 x 80 pixels showing cells of 20 x 16, named 10 and up, row by row from the lower left. */
class PortPicking : public testing::TestWithParam<Visual>
{
protected:
    void SetUp() override
    {
        if (GetParam() == Visual::kMultisampled) {
            Q3dPort& qt = *port().q3dPort();
            QlirnGLWidget* plain = qt.glWidget();
            QGLFormat format = qt.format();
            format.setSampleBuffers(true);
            plain->setPortDeleted();
            qt.releaseWidget(plain);
            delete plain;
            qt.createGLWidget(format, &port(), port().qControl());
        }
        ASSERT_TRUE(fWindow.show() && fOther.show());
        port().setCurrentContext();
        port().resendState();
        GLint samples = 0;
        glGetIntegerv(GL_SAMPLES, &samples);
        ASSERT_EQ(samples > 1, GetParam() == Visual::kMultisampled);
        port().depthTest(true);
        port().pushOrtho2D(0, 100, 0, 80);
    }

    T3dPort& port() { return fWindow.port(); }
    void distract() { fOther.port().setCurrentContext(); }

    void drawCell(unsigned i)
    {
        const float x = float(i % 5 * 20);
        const float y = float(i / 5 * 16);
        distract(); // wherever another port's context can be the current one
        port().loadName(10 + i);
        port().rect(x, y, x + 20, y + 16, true);
        distract();
    }
    void drawSquare(double z)
    {
        port().pushMatrix();
        port().translate(0, 0, z);
        port().rect(20, 10, 80, 70, true);
        port().popMatrix();
    }

    Names picked()
    {
        const TpickBuffer hits(512, nullptr);
        port().beginSelect(hits.buffer(), hits.size());
        port().pushName(0);
        for (unsigned i = 0; i < 25; ++i)
            drawCell(i);
        Names names;
        unsigned zmin, count;
        unsigned* record = nullptr;
        for (int left = port().endSelect(); left > 0; --left)
            names.insert(*(record = hits.nextElem(record, zmin, count)));
        return names;
    }
    Names rasterized()
    {
        Names names;
        for (unsigned i = 0; i < 25; ++i) {
            port().beginRasterizationSelect();
            drawCell(i);
            if (port().endRasterizationSelect(nullptr))
                names.insert(10 + i);
        }
        return names;
    }

    PortWindow<> fWindow{100, 80, GetParam() == Visual::kSingle ? Buffering::kSingle : Buffering::kDouble};
    PortWindow<> fOther{30, 30};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(, PortPicking, testing::Values(Visual::kSingle, Visual::kDouble, Visual::kMultisampled));

TEST_P(PortPicking, FindsWhatTheRectangleMeets)
{
    const std::tuple<Tpoint, unsigned short, Names> cases[] = {
        {{0, 0}, 1, {10}},      {{99, 0}, 2, {14}},
        {{0, 79}, 2, {30}},     {{99, 79}, 2, {34}},
        {{50, 0}, 1, {12}},     {{50, 79}, 3, {32}},
        {{0, 40}, 1, {20}},     {{99, 40}, 1, {24}},
        {{5, 17}, 3, {10, 15}}, {{50, 40}, 20, {16, 17, 18, 21, 22, 23, 26, 27, 28}}};
    const auto state = [this] {
        port().setCurrentContext();
        std::array<GLint, 3> values{};
        glGetIntegerv(GL_NAME_STACK_DEPTH, &values[0]);
        glGetIntegerv(GL_READ_BUFFER, &values[1]);
        glGetIntegerv(GL_RENDER_MODE, &values[2]);
        return values;
    };
    port().matrixMode(GL_TEXTURE);
    const auto before = state();
    for (const auto& [p, half, names] : cases) {
        SCOPED_TRACE(testing::Message() << p.x << "," << p.y);
        port().fSelectRect = port().makeSelectRect(p, half);
        EXPECT_EQ(picked(), names);
        EXPECT_EQ(rasterized(), names);
    }
    EXPECT_EQ(port().makeSelectRect({-20, 200}, 5), TportRect(0, 80, 0, 80));
    EXPECT_EQ(port().makeSelectRect({30000, -30000}, 65535), TportRect(0, 0, 100, 80));
    port().fSelectRect = TportRect();
    EXPECT_EQ(picked(), Names()) << "a rectangle of no extent";
    EXPECT_EQ(rasterized(), Names());

    port().pushViewport(TportRect(20, 16, 100, 80));
    port().fSelectRect = TportRect(21, 17, 23, 19);
    EXPECT_EQ(picked(), Names{16}) << "counted from the viewport's corner";
    EXPECT_EQ(rasterized(), Names{10}) << "counted from the port's";
    port().popViewport();

    port().fSelectRect = TportRect(3, 3, 5, 5);
    port().scissor(TportRect(20, 2, 30, 4), true);
    EXPECT_EQ(picked(), Names{10});
    EXPECT_EQ(rasterized(), Names{10});
    EXPECT_EQ(state(), before);
    EXPECT_FALSE(glIsEnabled(GL_SCISSOR_TEST));
    EXPECT_EQ(port().matrixMode(), GLenum(GL_TEXTURE));
    EXPECT_EQ(port().stateDifferences(), TstringArray());
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    port().popOrtho2D();
    T4dDblMatrix projection;
    port().getProjectionMatrix(projection);
    EXPECT_TRUE(projection.isIdentity()) << "nothing is left on the stack";
}

TEST_P(PortPicking, NamesTheNearestWithAllItsNames)
{
    port().fSelectRect = TportRect(50, 40, 52, 42);
    const auto draw = [this] {
        const auto square = [this](unsigned name, double z) {
            port().pushName(name);
            drawSquare(z);
            port().popName();
        };
        port().pushName(1);
        square(11, 0);
        port().pushName(5);
        square(55, 0.5);
        square(56, 0.5);
        port().popName();
        square(0x412, -0.5);
        port().initNames();
        drawSquare(0.7);
    };
    port().beginSelect(nullptr, 0);
    draw();
    const int hits = port().endSelect();
    const TpickBuffer found(T3dPort::kSelectBufferSize, T3dPort::fsSelectBuffer);
    unsigned zmin, count, priority;
    const unsigned* names = found.closestElem(hits, zmin, count);
    EXPECT_EQ(std::vector<unsigned>(names, names + count), std::vector<unsigned>({1, 5, 55}));
    EXPECT_NEAR(zmin / double(0xFFFFFFFFu), 0.25, 1e-4);
    names = found.closestElem(hits, 0x400, zmin, count, priority);
    EXPECT_EQ(std::vector<unsigned>(names, names + count), std::vector<unsigned>({1, 0x412}));
    EXPECT_EQ(priority, 0x400u);

    unsigned few[7] = {0, 0, 0, 0, 0, 77, 77};
    port().beginSelect(few, 5);
    draw();
    EXPECT_LT(port().endSelect(), 0) << "an overflow of the caller's buffer";
    EXPECT_THAT(std::vector<unsigned>(few + 5, few + 7), testing::Each(77u));
    port().beginSelect(T3dPort::fsSelectBuffer, 1);
    for (int i = 0; i < 200; ++i)
        draw();
    EXPECT_EQ(port().endSelect(), 1) << "of the shared one";
    GlRecorder recorder;
    recorder.start();
    draw();
    EXPECT_EQ(recorder.count("glPushName") + recorder.count("glPopName") + recorder.count("glInitNames"), 0);
}

TEST_P(PortPicking, MeasuresDepthByDrawing)
{
    const auto depthOf = [this](double z) {
        float depth = 0;
        port().beginRasterizationSelect();
        drawSquare(z);
        const bool isHit = port().endRasterizationSelect(&depth);
        EXPECT_EQ(isHit, depth < 1);
        return depth;
    };
    glPixelStorei(GL_PACK_ROW_LENGTH, 1000);
    for (const TportRect& r : {TportRect(30, 30, 31, 31), TportRect(10, 10, 50, 50), TportRect(79, 20, 100, 23)}) {
        port().fSelectRect = r;
        EXPECT_NEAR(depthOf(0.5), 0.25, 1e-4);
        EXPECT_NEAR(depthOf(-0.5), 0.75, 1e-4) << "what was there before is forgotten";
        port().depthMask(false);
        EXPECT_GT(depthOf(0.5), 1) << "nothing where the depth mask is off";
        port().depthMask(true);
    }
    port().fSelectRect = TportRect(81, 20, 100, 23);
    EXPECT_EQ(depthOf(0), 3.4028234663852886e38f);
}

TEST(PickBuffer, NeverReadsPastItsEnd)
{
    // Three whole records, the first without a name, and one that claims more than there is.
    const std::vector<unsigned> words = {0, 1, 9, 2, 50, 60, 7, 8, 1, 50, 70, 0x90, 0xFFFFFFFFu, 40, 41, 1, 2};
    for (std::size_t size = 0; size <= words.size(); ++size) {
        const auto held = std::make_unique<unsigned[]>(size);
        std::copy_n(words.begin(), size, held.get());
        const TpickBuffer buffer(int(size), held.get());
        unsigned zmin, count, priority;
        for (const int hits : {-1, 0, 1, 2, 3, 2000000000}) {
            const unsigned* names = buffer.closestElem(hits, zmin, count);
            EXPECT_EQ(names, hits > 1 && size >= 8 ? held.get() + 6 : nullptr);
            EXPECT_EQ(zmin, names ? 50u : 0xFFFFFFFFu);
            EXPECT_EQ(count, names ? 2u : 0u);
            buffer.closestElem(hits, 0x80, zmin, count, priority);
            EXPECT_EQ(priority, hits > 2 && size >= 12 ? 0x80u : 0u);
        }
        EXPECT_EQ(buffer.nextElem(held.get() + size, zmin, count), nullptr);
    }
}

TEST(PickingSolids, ASphereIsHit)
{
    PortWindow<> window(60, 60);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    port.ortho(-1, 1, -1, 1, -2, 2);
    port.fSelectRect = port.makeSelectRect({30, 30}, 12);
    for (const bool filled : {false, true}) {
        port.sphere(filled); // compiles the list, which drivers may not bear to be called while picking
        port.beginSelect(nullptr, 0);
        port.pushName(7);
        port.sphere(filled);
        port.sphere({0, 0, 0}, 0.5f, filled);
        EXPECT_EQ(port.endSelect(), 1);
    }
}
