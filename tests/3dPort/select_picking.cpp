// Picking on the driver, in both modes, and the search of hit records.

#include "3dPort/Calls.h"

#include "Graphics/3dPort/TpickBuffer.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"

#include <gmock/gmock.h>

#include <memory>
#include <set>

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
        port().ortho(0, 100, 0, 80, -1, 1);
    }

    T3dPort& port() { return fWindow.port(); }
    void distract() { fOther.port().setCurrentContext(); }

    void drawCell(unsigned i)
    {
        const float x = float(i % 5 * 20);
        const float y = float(i / 5 * 16);
        port().rect(x, y, x + 20, y + 16, true);
    }
    void drawSquare(double z)
    {
        port().pushMatrix();
        port().translate(0, 0, z);
        port().rect(20, 10, 80, 70, true);
        port().popMatrix();
    }

    // Both with another port's context current wherever it can be.
    Names picked()
    {
        const TpickBuffer hits(512, nullptr);
        distract();
        port().beginSelect(hits.buffer(), hits.size());
        port().pushName(0);
        for (unsigned i = 0; i < 25; ++i) {
            distract();
            port().loadName(10 + i);
            drawCell(i);
        }
        distract();
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
            distract();
            drawCell(i);
            distract();
            if (port().endRasterizationSelect(nullptr))
                names.insert(10 + i);
        }
        return names;
    }
    float depthOf(double z)
    {
        float depth = 0;
        port().beginRasterizationSelect();
        drawSquare(z);
        const bool isHit = port().endRasterizationSelect(&depth);
        EXPECT_EQ(isHit, depth < 1);
        return depth;
    }

    PortWindow<> fWindow{100, 80, GetParam() == Visual::kSingle ? Buffering::kSingle : Buffering::kDouble};
    PortWindow<> fOther{30, 30};
};

/** What picking must leave as it was, beside what the port's audit compares. */
std::vector<double> state(const T3dPort& port)
{
    std::vector<double> values(20);
    glGetDoublev(GL_NAME_STACK_DEPTH, &values[0]);
    glGetDoublev(GL_READ_BUFFER, &values[1]);
    glGetDoublev(GL_RENDER_MODE, &values[2]);
    values[3] = port.matrixMode();
    T4dDblMatrix projection;
    port.getProjectionMatrix(projection);
    std::copy_n(projection.data(), 16, &values[4]);
    return values;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(, PortPicking, testing::Values(Visual::kSingle, Visual::kDouble, Visual::kMultisampled));

TEST_P(PortPicking, FindsWhatTheRectangleMeets)
{
    const struct
    {
        Tpoint p;
        unsigned short half;
        Names names;
    } cases[] = {{{0, 0}, 1, {10}},      {{99, 0}, 2, {14}},
                 {{0, 79}, 2, {30}},     {{99, 79}, 2, {34}},
                 {{50, 0}, 1, {12}},     {{50, 79}, 3, {32}},
                 {{0, 40}, 1, {20}},     {{99, 40}, 1, {24}},
                 {{5, 17}, 3, {10, 15}}, {{50, 40}, 20, {16, 17, 18, 21, 22, 23, 26, 27, 28}}};
    port().matrixMode(GL_TEXTURE);
    port().setCurrentContext();
    const std::vector<double> before = state(port());
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.p.x << "," << c.p.y);
        port().fSelectRect = port().makeSelectRect(c.p, c.half);
        EXPECT_EQ(picked(), c.names);
        EXPECT_EQ(rasterized(), c.names);
    }
    port().fSelectRect = TportRect();
    EXPECT_EQ(picked(), Names()) << "a rectangle of no extent";
    EXPECT_EQ(rasterized(), Names());

    port().fSelectRect = TportRect(3, 3, 5, 5);
    port().scissor(TportRect(20, 2, 30, 4), true);
    EXPECT_EQ(picked(), Names{10});
    EXPECT_EQ(rasterized(), Names{10});
    EXPECT_EQ(state(port()), before);
    EXPECT_FALSE(glIsEnabled(GL_SCISSOR_TEST));
    EXPECT_EQ(port().stateDifferences(), TstringArray());
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
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
    glPixelStorei(GL_PACK_ROW_LENGTH, 1000);
    for (const TportRect& r : {TportRect(30, 30, 31, 31), TportRect(10, 10, 50, 50), TportRect(79, 20, 100, 23)}) {
        port().fSelectRect = r;
        EXPECT_NEAR(depthOf(0.5), 0.25, 1e-4);
        port().depthMask(false);
        port().beginRasterizationSelect();
        EXPECT_FALSE(port().endRasterizationSelect(nullptr)) << "what was there before is forgotten";
        port().depthMask(true);
    }
    port().fSelectRect = TportRect(81, 20, 100, 23);
    EXPECT_EQ(depthOf(0), 3.4028234663852886e38f);
}

TEST(PortSelectRect, StaysInsideThePort)
{
    T3dPort port(nullptr, "testPort", false);
    port.setPortRect(TportRect(0, 0, 100, 80));
    EXPECT_EQ(port.makeSelectRect({99, 2}, 5), TportRect(94, 0, 100, 7));
    EXPECT_EQ(port.makeSelectRect({-20, 200}, 5), TportRect(0, 80, 0, 80));
    EXPECT_EQ(port.makeSelectRect({30000, -30000}, 65535), TportRect(0, 0, 100, 80));
    port.setPortRect(TportRect());
    EXPECT_EQ(port.makeSelectRect({3, 3}, 1), TportRect());
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
