// UV caches: the vertex streams they send, and who owns what.

#include "3dPort/Calls.h"
#include "Graphics/interaction/TuvCacheArray.h"
#include "support/T3dPortProbe.h"

#include <algorithm>
#include <random>
#include <sstream>

namespace {

using Calls = std::vector<std::string>;

/** Points without room for one more, so that a read beyond them is one outside their memory. */
T2FloatArray pointsOf(unsigned n)
{
    T2FloatArray points(n);
    for (unsigned i = 0; i < n; ++i)
        points.append({float(i), 0.5f * float(i)});
    return points;
}

Calls primitive(const std::string& begin, const std::vector<int>& vertices)
{
    Calls calls{begin};
    for (const int i : vertices) {
        std::ostringstream call;
        call << "glVertex2fv([" << i << ' ' << 0.5 * i << "])";
        calls.push_back(call.str());
    }
    calls.push_back("glEnd()");
    return calls;
}

class UvDrawing : public ShownPort
{
protected:
    Calls callsOf(void (TuvCache::*draw)(T3dPort&) const, const TuvCache& cache)
    {
        GlRecorder recorder;
        recorder.start();
        (cache.*draw)(port());
        recorder.stop();
        EXPECT_FALSE(port().portFlags().test(T3dPort::kPortInPrimitive));
        return recorder.calls();
    }
};

TEST_F(UvDrawing, SendsItsPolygons)
{
    constexpr int kNone = -1;
    const struct
    {
        unsigned type, points;
        int indices;
        bool edgeFlag;
        std::string call; ///< of glBegin or glDrawArrays; empty when nothing is to be sent
        std::vector<int> vertices;
    } cases[] = {
        {1, 8, 8, false, "glBegin(GL_QUADS)", {0, 1, 2, 3, 4, 5, 6, 7}},
        {1, 8, 7, true, "glBegin(GL_QUADS)", {0, 1, 2, 3}},
        {1, 8, 3, false, "glBegin(GL_QUADS)", {}},
        {1, 7, 4000000, false, "glBegin(GL_QUADS)", {0, 1, 2, 3}},
        {1, 3, 8, false, "glBegin(GL_QUADS)", {}},
        {0, 7, 6, false, "glBegin(GL_TRIANGLES)", {0, 1, 2, 3, 3, 4, 5, 6}},
        {7, 6, 8, false, "glBegin(GL_TRIANGLES)", {0, 1, 2, 3, 3, 4, 5, 5}},
        {0, 6, 2, false, "", {}},
        {0, 2, 6, false, "", {}},
        {1, 6, kNone, false, "glDrawArrays(GL_QUADS, 0, 6)", {}},
        {0, 2, kNone, false, "", {}},
        {0, 6, kNone, true, "", {}},
    };
    for (const auto& each : cases) {
        const T2FloatArray points = pointsOf(each.points);
        TuInt32Array indices;
        indices.setLength(unsigned(std::max(each.indices, 0)));
        std::fill(indices.begin(), indices.end(), 0xFFFFFFFFu);
        TbitFieldFixedN edgeFlags(100);
        edgeFlags.setBit(77, each.edgeFlag);
        TuvCache cache;
        cache.setPointsPerPolygon(TuvCache::TuvPolygonType(each.type));
        cache.setPoints(points);
        cache.setEdgeFlags(edgeFlags);
        if (each.indices != kNone)
            cache.setIndices(indices);
        Calls wanted = primitive(each.call, each.vertices);
        if (each.indices == kNone)
            wanted = {"glEnableClientState(GL_VERTEX_ARRAY)", "glVertexPointer(2, GL_FLOAT, 0, pointer)", each.call,
                      "glDisableClientState(GL_VERTEX_ARRAY)"};
        else
            wanted.insert(wanted.begin(), "glColor3fv([1 1 1])");
        wanted.insert(wanted.begin(), "glPolygonMode(GL_FRONT_AND_BACK, GL_LINE)");
        wanted.push_back("glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)");
        port().color(kCblack);
        EXPECT_EQ(each.call.empty() ? Calls() : wanted, callsOf(&TuvCache::draw, cache)) << "case " << &each - cases;
        void* pointer = nullptr;
        glGetPointerv(GL_VERTEX_ARRAY_POINTER, &pointer);
        EXPECT_TRUE(each.indices != kNone || each.call.empty() || pointer == points.data());
    }
}

TEST_F(UvDrawing, SendsItsPointsAndLeavesTheirSize)
{
    const T2FloatArray points = pointsOf(2);
    TuvCache cache;
    EXPECT_EQ(Calls(), callsOf(&TuvCache::drawPoints, cache));
    cache.setPoints(points);
    port().pointSize(7);
    T3dPortProbe::context(port())->fHardwareIndex = 3;
    Calls wanted = primitive("glBegin(GL_POINTS)", {0, 1});
    wanted.insert(wanted.begin(), {"glPointSize(4)", "glColor3fv([1 0 0])"});
    wanted.push_back("glPointSize(7)");
    EXPECT_EQ(wanted, callsOf(&TuvCache::drawPoints, cache));
    EXPECT_EQ(T3dPortProbe::context(port())->fHardwareIndex, TglContext::kUnknownIndex);
    EXPECT_EQ(TstringArray(), port().stateDifferences());
}

// A model beside the caches says what each must hold after every step of a walk that is the same every time.
TEST(UvCache, OwnsWhatItCopiedAndNothingElse)
{
    const T2FloatArray lentPoints[] = {pointsOf(0), pointsOf(1), pointsOf(2)};
    TuInt32Array lentIndices[3];
    for (unsigned i = 0; i < 3; ++i)
        lentIndices[i].setLength(i);
    TuvCache caches[3];
    std::pair<bool, int> models[3] = {{false, -1}, {false, -1}, {false, -1}}; // ownership, length or -1 for no arrays
    std::mt19937 random(815);
    for (int step = 0; step < 20000; ++step) {
        const auto which = random() % 3;
        const auto other = random() % 3;
        const auto operation = random() % 8;
        TuvCache& cache = caches[which];
        auto& [owns, length] = models[which];
        if (operation < 2) {
            cache.setPoints(lentPoints[other]);
            cache.setPoints(*cache.points());
            cache.setIndices(lentIndices[other]);
            length = int(other);
        } else if (operation == 2) {
            cache.clearPoints();
            cache.clearIndices();
            length = owns ? std::min(length, 0) : length;
        } else if (operation == 3) {
            cache.reset();
            length = -1;
        } else if (operation == 4) {
            cache.setOwnsData(!owns);
            length = owns ? -1 : length;
            owns = !owns;
        } else if (operation == 7 && owns && length >= 0) {
            TuvCache borrower;
            borrower.setPoints(*cache.points());
            borrower.setIndices(lentIndices[length]);
            cache = borrower;
            ASSERT_EQ(cache.points(), borrower.points());
            cache = std::move(borrower);
        } else {
            operation == 5 ? cache = TuvCache(caches[other]) : cache = caches[other];
            models[which] = models[other];
        }
        for (int i = 0; i < 3; ++i) {
            const TuvCache& each = caches[i];
            const bool isEmpty = models[i].second < 0;
            ASSERT_EQ(each.ownsData(), models[i].first);
            ASSERT_EQ(each.points() ? int(each.points()->length()) : -1, models[i].second) << operation;
            ASSERT_EQ(each.indices() ? int(each.indices()->length()) : -1, models[i].second) << operation;
            ASSERT_TRUE(each.ownsData() || isEmpty || each.points() == &lentPoints[models[i].second]);
            ASSERT_EQ(TuvCache(each) == each, !each.ownsData() || isEmpty);
        }
    }
}

TEST(UvCacheArray, TakesItsOwnElementsAsArguments)
{
    TuvCacheArray array(3);
    for (unsigned n = 1; n <= 3; ++n) {
        TuvCache item(true);
        item.setPoints(pointsOf(n));
        array.addLast(item);
    }
    const auto lengths = [&array] {
        std::string all;
        for (const TuvCache& each : array)
            all += std::to_string(each.points()->length());
        return all;
    };
    EXPECT_TRUE(array.insert(array[2], 0));
    EXPECT_FALSE(array.insert(array[0], 5));
    array.addLast(&array[1], 2);
    EXPECT_EQ("312312", lengths());
    unsigned index = 0;
    EXPECT_EQ(array.find(array[3], index), 0);
    EXPECT_EQ(index, 3u);
    EXPECT_EQ(array.find(TuvCache(array[3]), index), -1);
    EXPECT_EQ(index, 6u);
    EXPECT_TRUE(array.remove(array[0]));
    EXPECT_FALSE(array.remove(TuvCache(array[0])));
    array.catenate(array);
    TuvCacheArray::shuffle(&array[1], &array[0], 3);
    TuvCacheArray::shuffle(&array[6], &array[7], 3);
    array.copy(array);
    EXPECT_EQ("1123213122", lengths());
}

} // namespace
