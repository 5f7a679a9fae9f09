// Picking on the driver, in both modes, and the search of hit records.

#include <QApplication>
#include <QVBoxLayout>

#include "3dPort/Calls.h"
#include "support/T3dPortProbe.h"

#include "Graphics/3dPort/TpickBuffer.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/Tpoint.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>

namespace {

constexpr unsigned kFar = 0xFFFFFFFFu;
constexpr float kLargestFloat = 3.4028234663852886e38f;

enum class Visual { kSingle, kDouble, kMultisampled };

/** A port of 100 x 80 pixels showing cells of 20 x 16, named 10 and up, row by row from the lower left. */
class PortPicking : public testing::TestWithParam<Visual>
{
protected:
    void SetUp() override
    {
        if (GetParam() == Visual::kMultisampled)
            multisample();
        ASSERT_TRUE(fWindow.show());
        ASSERT_TRUE(fOther.show());
        GLint samples = 0;
        port().setCurrentContext();
        glGetIntegerv(GL_SAMPLES, &samples);
        ASSERT_EQ(samples > 1, GetParam() == Visual::kMultisampled);
        port().resendState(); // its widget may be another than the port was made with
        port().depthTest(true);
        port().ortho(0, 100, 0, 80, -1, 1);
    }

    T3dPort& port() { return fWindow.port(); }

    /** Gives the port a widget whose visual has several samples per pixel. */
    void multisample()
    {
        QlirnGLWidget* plain = port().glWidget();
        QGLFormat format = port().q3dPort()->format();
        format.setSampleBuffers(true);
        plain->setPortDeleted();
        port().q3dPort()->releaseWidget(plain);
        delete plain;
        port().q3dPort()->createGLWidget(format, &port(), port().qControl());
        port().q3dPort()->setActiveWidget(Q3dPort::kGLWidget);
    }

    /** The driver's context is another port's. */
    void distract()
    {
        fOther.port().setCurrentContext();
        glColor3f(1, 1, 1);
    }

    void drawCell(int i)
    {
        const float x = float(i % 5 * 20);
        const float y = float(i / 5 * 16);
        port().rect(x, y, x + 20, y + 16, true);
    }

    std::set<unsigned> picked()
    {
        TpickBuffer hits(512, nullptr);
        distract();
        port().beginSelect(hits.buffer(), hits.size());
        port().pushName(0);
        for (unsigned i = 0; i < 25; ++i) {
            if (i == 12)
                distract();
            port().loadName(10 + i);
            drawCell(int(i));
        }
        distract();
        std::set<unsigned> names;
        unsigned zmin, count;
        unsigned* record = nullptr;
        for (int left = port().endSelect(); left > 0; --left) {
            record = hits.nextElem(record, zmin, count);
            EXPECT_EQ(count, 1u);
            names.insert(*record);
        }
        return names;
    }

    std::set<unsigned> rasterized()
    {
        std::set<unsigned> names;
        for (unsigned i = 0; i < 25; ++i) {
            distract();
            port().beginRasterizationSelect();
            distract();
            drawCell(int(i));
            distract();
            if (port().endRasterizationSelect(nullptr))
                names.insert(10 + i);
        }
        return names;
    }

    /** The depth at which the rectangle meets a square of 60 pixels at @p z, or the value for none. */
    float depthOf(float z)
    {
        port().beginRasterizationSelect();
        port().pushMatrix();
        port().translate(0, 0, z);
        port().rect(20, 10, 80, 70, true);
        port().popMatrix();
        float depth = 0;
        const bool isHit = port().endRasterizationSelect(&depth);
        EXPECT_EQ(isHit, depth < 1);
        return depth;
    }

    PortWindow<> fWindow{100, 80, GetParam() == Visual::kSingle ? Buffering::kSingle : Buffering::kDouble};
    PortWindow<> fOther{30, 30};
};

std::string state(const T3dPort& port)
{
    GLint names = 0, readBuffer = 0, mode = 0;
    glGetIntegerv(GL_NAME_STACK_DEPTH, &names);
    glGetIntegerv(GL_READ_BUFFER, &readBuffer);
    glGetIntegerv(GL_RENDER_MODE, &mode);
    T4dDblMatrix projection;
    port.getProjectionMatrix(projection);
    std::string text = "names " + std::to_string(names) + ", read " + GlRecorder::enumName(unsigned(readBuffer)) + ", " +
                       GlRecorder::enumName(unsigned(mode)) + ", matrix mode " +
                       GlRecorder::enumName(port.matrixMode()) + (glIsEnabled(GL_SCISSOR_TEST) ? ", scissor" : "");
    for (int k = 0; k < 16; ++k)
        text += " " + std::to_string(projection[k]);
    return text;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(, PortPicking, testing::Values(Visual::kSingle, Visual::kDouble, Visual::kMultisampled));

TEST_P(PortPicking, FindsWhatTheRectangleMeets)
{
    const struct
    {
        Tpoint p;
        unsigned short half;
        std::set<unsigned> names;
    } cases[] = {
        {{0, 0}, 1, {10}},       {{99, 0}, 2, {14}},    {{0, 79}, 2, {30}},      {{99, 79}, 2, {34}},
        {{50, 0}, 1, {12}},      {{50, 79}, 3, {32}},   {{0, 40}, 1, {20}},      {{99, 40}, 1, {24}},
        {{40, 32}, 3, {16, 17, 21, 22}}, {{5, 17}, 3, {10, 15}}, {{50, 40}, 20, {16, 17, 18, 21, 22, 23, 26, 27, 28}},
    };
    port().matrixMode(GL_TEXTURE);
    port().setCurrentContext();
    const std::string before = state(port());
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.p.x << "," << c.p.y << " by " << c.half);
        port().fSelectRect = port().makeSelectRect(c.p, c.half);
        EXPECT_EQ(picked(), c.names);
        EXPECT_EQ(rasterized(), c.names);
    }
    port().fSelectRect = TportRect();
    EXPECT_EQ(picked(), std::set<unsigned>());
    EXPECT_EQ(rasterized(), std::set<unsigned>()) << "a rectangle of no extent";

    port().scissor(TportRect(1, 2, 3, 4), true);
    port().depthMask(false);
    port().fSelectRect = TportRect(3, 3, 5, 5);
    EXPECT_EQ(picked(), std::set<unsigned>{10});
    port().depthMask(true);
    EXPECT_EQ(rasterized(), std::set<unsigned>{10});
    EXPECT_EQ(state(port()), before);
    EXPECT_EQ(port().stateDifferences(), TstringArray());
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_P(PortPicking, NamesTheNearestWithAllItsNames)
{
    port().fSelectRect = TportRect(50, 40, 52, 42);
    const auto draw = [this] {
        const auto square = [this](unsigned name, float z) {
            port().pushName(name);
            port().pushMatrix();
            port().translate(0, 0, z);
            port().rect(20, 10, 80, 70, true);
            port().popMatrix();
            port().popName();
        };
        port().pushName(1);
        square(11, 0);
        port().pushName(5);
        square(55, 0.5f);
        square(56, 0.5f);
        port().popName();
        square(0x412, -0.5f);
        port().initNames();
        port().rect(0, 0, 100, 80, true); // a hit without a name
        port().pushName(9);
        port().rect(0, 0, 9, 9, true); // elsewhere
    };
    for (unsigned* const buffer : {static_cast<unsigned*>(nullptr), T3dPort::fsSelectBuffer}) {
        port().beginSelect(buffer, buffer ? 7 : 0);
        draw();
        const int hits = port().endSelect();
        EXPECT_EQ(hits, 5);
        TpickBuffer found(T3dPort::kSelectBufferSize, T3dPort::fsSelectBuffer);
        unsigned zmin, count, priority;
        const unsigned* names = found.closestElem(hits, zmin, count);
        ASSERT_TRUE(names);
        EXPECT_EQ(std::vector<unsigned>(names, names + count), std::vector<unsigned>({1, 5, 55}));
        EXPECT_NEAR(zmin / double(kFar), 0.25, 1e-4);
        names = found.closestElem(hits, 0x400, zmin, count, priority);
        ASSERT_TRUE(names);
        EXPECT_EQ(std::vector<unsigned>(names, names + count), std::vector<unsigned>({1, 0x412}));
        EXPECT_EQ(priority, 0x400u);
    }
    // Too small for its records: the caller's tells so, the shared one gives its first.
    unsigned few[7] = {0, 0, 0, 0, 0, 77, 77};
    port().beginSelect(few, 5);
    draw();
    EXPECT_LT(port().endSelect(), 0);
    EXPECT_THAT(std::vector<unsigned>(few + 5, few + 7), testing::Each(77u));
    port().beginSelect(nullptr, 0);
    for (int i = 0; i < 200; ++i)
        draw();
    EXPECT_EQ(port().endSelect(), 1);
    EXPECT_EQ(T3dPort::fsSelectBuffer[4], 11u);

    GlRecorder recorder;
    recorder.start();
    draw();
    EXPECT_EQ(recorder.count("glPushName") + recorder.count("glPopName") + recorder.count("glInitNames"), 0);
}

TEST_P(PortPicking, MeasuresDepthByDrawing)
{
    for (const TportRect& r : {TportRect(30, 30, 31, 31), TportRect(10, 10, 50, 50), TportRect(79, 20, 100, 23)}) {
        port().fSelectRect = r;
        EXPECT_NEAR(depthOf(0.5f), 0.25, 1e-4);
        EXPECT_NEAR(depthOf(-0.5f), 0.75, 1e-4) << "what was nearer in the pick before is forgotten";
    }
    port().fSelectRect = TportRect(81, 20, 100, 23);
    EXPECT_EQ(depthOf(0), kLargestFloat);

    port().fSelectRect = TportRect(30, 20, 70, 60);
    port().setCurrentContext();
    glPixelStorei(GL_PACK_ROW_LENGTH, 1000);
    GlRecorder recorder;
    recorder.start();
    EXPECT_NEAR(depthOf(0), 0.5, 1e-4);
    recorder.stop();
    EXPECT_THAT(recorder.text(), testing::HasSubstr("glScissor(0, 0, 16, 16)"));
    EXPECT_THAT(recorder.text(), testing::HasSubstr("glReadPixels(0, 0, 16, 16, GL_DEPTH_COMPONENT, GL_FLOAT"));
    glPixelStorei(GL_PACK_ROW_LENGTH, 0);
}

TEST(PortSelectRect, StaysInsideThePort)
{
    T3dPort port(nullptr, "testPort", false);
    port.setPortRect(TportRect(0, 0, 100, 80));
    EXPECT_EQ(port.makeSelectRect({2, 2}, 5), TportRect(0, 0, 7, 7));
    EXPECT_EQ(port.makeSelectRect({99, 79}, 5), TportRect(94, 74, 100, 80));
    EXPECT_EQ(port.makeSelectRect({-20, 200}, 5), TportRect(0, 80, 0, 80));
    EXPECT_EQ(port.makeSelectRect({30000, -30000}, 65535), TportRect(0, 0, 100, 80));
    port.setPortRect(TportRect());
    EXPECT_EQ(port.makeSelectRect({3, 3}, 1), TportRect());
}

TEST(PickBuffer, NeverReadsPastItsEnd)
{
    // Three whole records, the first without a name, and one that claims more than there is.
    const std::vector<unsigned> words = {0, 1, 9, 2, 50, 60, 7, 8, 1, 50, 70, 0x90, 3, 40, 41, 1, 2};
    for (std::size_t size = 0; size <= words.size(); ++size) {
        const auto held = std::make_unique<unsigned[]>(size);
        std::copy_n(words.begin(), size, held.get());
        const TpickBuffer buffer(int(size), held.get());
        unsigned zmin = 1, count = 1, priority = 1;
        unsigned* record = nullptr;
        int records = 0;
        while ((record = buffer.nextElem(record, zmin, count)))
            ++records;
        EXPECT_EQ(records, int(size >= 3) + int(size >= 8) + int(size >= 12)) << size;
        EXPECT_EQ(zmin, kFar);
        EXPECT_EQ(count, 0u);
        for (const int hits : {-1, 0, 1, 2, 3, 4, 2000000000}) {
            const unsigned* names = buffer.closestElem(hits, zmin, count);
            EXPECT_EQ(names, hits > 1 && size >= 8 ? held.get() + 6 : nullptr);
            EXPECT_EQ(zmin, names ? 50u : kFar);
            EXPECT_EQ(count, names ? 2u : 0u);
            names = buffer.closestElem(hits, 0x80, zmin, count, priority);
            EXPECT_EQ(priority, hits > 2 && size >= 12 ? 0x80u : 0u);
        }
    }
    std::vector<unsigned> absurd = {kFar, 5, 6, 0x80000000u, 5, 6, 7};
    TpickBuffer buffer(int(absurd.size()), absurd.data());
    unsigned zmin, count, other[4] = {};
    EXPECT_EQ(buffer.nextElem(nullptr, zmin, count), nullptr);
    EXPECT_EQ(buffer.nextElem(absurd.data() + 3, zmin, count), nullptr);
    EXPECT_EQ(buffer.nextElem(absurd.data() + 6, zmin, count), nullptr);
    EXPECT_EQ(buffer.nextElem(other + 3, zmin, count), nullptr);
    EXPECT_EQ(TpickBuffer(-5, nullptr).nextElem(nullptr, zmin, count), nullptr);
}
