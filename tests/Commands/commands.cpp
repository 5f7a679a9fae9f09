// The commands through both doors, text and Python.

#include "Commands/Doors.h"

#include "Commands/colorSliderCmds/TelfColorIndexSliderGrpCmd.h"
#include "Commands/imageCmds/TiceStaticImageCmd.h"
#include "ui/QlirnUiObjectType.h"

#include <QTemporaryDir>

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const char kSlider[] = "colorIndexSliderGrp";

class Commands : public CommandTest, public ::testing::WithParamInterface<Door>
{
protected:
    Answer run(const std::string& command, const std::string& object, const Flags& flags)
    {
        return CommandTest::run(GetParam(), command, object, flags);
    }
    std::string query(const std::string& object, const std::string& flag, const std::string& command = kSlider)
    {
        const Answer answer = run(command, object, {{"query", ""}, {flag, ""}});
        return answer.ok ? answer.text : "error " + answer.text;
    }
    Answer edit(const std::string& object, Flags flags, const std::string& command = kSlider)
    {
        flags.emplace(flags.begin(), "edit", "");
        return run(command, object, flags);
    }
    /** Value, bounds and invisible index. */
    std::string state(const std::string& object)
    {
        return query(object, "value") + " in " + query(object, "minValue") + ".." + query(object, "maxValue") +
               ", invisible " + query(object, "invisible");
    }
};
INSTANTIATE_TEST_SUITE_P(, Commands, ::testing::Values(Door::kText, Door::kPython),
                         [](const auto& door) { return door.param == Door::kText ? "Text" : "Python"; });

} // namespace

TEST_P(Commands, CreateEditAndQueryEveryFlag)
{
    EXPECT_EQ(run(kSlider, "", {}), (Answer{true, "colorIndexSliderGrp1"}));
    EXPECT_EQ(state("colorIndexSliderGrp1"), "0 in 0..10, invisible -1");
    EXPECT_EQ(query("colorIndexSliderGrp1", "label"), "");
    EXPECT_EQ(query("colorIndexSliderGrp1", "columnWidth"), "80 160");

    EXPECT_EQ(run(kSlider, "wire",
                  {{"label", "\"Wire colour\""},
                   {"extraLabel", "\"of 8\""},
                   {"minValue", "1"},
                   {"maxValue", "8"},
                   {"value", "3"},
                   {"forceDragRefresh", ""},
                   {"invisible", "3"},
                   {"annotation", "\"tip\""},
                   {"height", "30"},
                   {"enable", GetParam() == Door::kText ? "off" : "False"}}),
              (Answer{true, "wire"}));
    EXPECT_EQ(state("wire"), "3 in 1..8, invisible -1");
    for (const auto& [flag, value] : CommandTest::Flags{{"label", "Wire colour"},
                                                        {"extraLabel", "of 8"},
                                                        {"columnWidth", "140 80 160"},
                                                        {"annotation", "tip"},
                                                        {"height", "30"},
                                                        {"enable", "0"},
                                                        {"visible", "1"},
                                                        {"parent", "panel"}})
        EXPECT_EQ(query("wire", flag), value) << flag;
    EXPECT_EQ(edit("wire", {{"label", "\"Face\""}, {"extraLabel", "\"\""}, {"minValue", "-4"}, {"value", "-2"}}).text,
              "wire");
    EXPECT_EQ(query("wire", "label") + query("wire", "extraLabel"), "Face");
    EXPECT_EQ(state("wire"), "-2 in -4..8, invisible -1");
    EXPECT_EQ(run(kSlider, "wire", {{"exists", ""}}).text, "1");
    EXPECT_EQ(run("image", "wire", {{"exists", ""}}).text, "0");

    auto* group = find<QlirnColorIndexSliderGrp>("wire");
    ASSERT_TRUE(group);
    panel().show();
    settle();
    EXPECT_EQ(group->column(1)->objectName(), "color");
    EXPECT_EQ(group->column(1)->width(), 140);
    EXPECT_EQ(group->column(2)->objectName(), "port");
    EXPECT_EQ(group->column(2)->width(), 80);
    EXPECT_EQ(group->column(3)->objectName(), "slider");
    EXPECT_GE(group->column(3)->width(), 160);
    EXPECT_EQ(QlirnUiObjectType::typeName(group->column(2)), "staticText");
    EXPECT_EQ(QlirnUiObjectType::typeName(group->column(3)), "intSlider");
    const bool isText = GetParam() == Door::kText;
    EXPECT_TRUE(edit("wire", {{"columnAttach", isText ? "3 right" : "(3, 'right')"},
                              {"columnAlign", isText ? "1 center" : "(1, 'center')"}})
                    .ok);
    settle();
    EXPECT_LT(group->column(3)->width(), 160);
    EXPECT_GT(group->column(3)->x(), group->column(2)->geometry().right() + 20);
    EXPECT_EQ(qobject_cast<QLabel*>(group->column(1))->alignment(), Qt::AlignCenter);
}

TEST_P(Commands, ValuesAreCorrectedOrRefused)
{
    const std::string kOrder = "colorIndexSliderGrp: The maximum value must be greater than the minimum value.";
    const std::string kLow = "The value must be greater than or equal to the minimum value.";
    const std::string kHigh = "The value must be less than or equal to the maximum value.";
    const struct
    {
        Flags flags;
        std::string warning, error, state;
    } cases[] = {
        {{{"value", "12"}}, kHigh, "", "10 in 0..10"},
        {{{"value", "-1"}}, kLow, "", "0 in 0..10"},
        {{{"minValue", "5"}, {"maxValue", "5"}}, "", kOrder, "4 in 0..10"},
        {{{"maxValue", "0"}, {"value", "7"}}, "", kOrder, "4 in 0..10"},
        {{{"minValue", "10"}}, "", kOrder, "4 in 0..10"},
        {{{"minValue", "20"}, {"maxValue", "30"}}, "", "", "20 in 20..30"},
        {{{"minValue", "-30"}, {"maxValue", "-20"}, {"value", "0"}}, kHigh, "", "-20 in -30..-20"},
        {{{"maxValue", "3"}}, "", "", "3 in 0..3"},
        {{{"minValue", "-2147483647"}, {"maxValue", "2147483647"}}, "", "", "4 in -2147483647..2147483647"},
    };
    int number = 0;
    for (const auto& tested : cases) {
        const std::string name = "case" + std::to_string(number++);
        SCOPED_TRACE(name);
        ASSERT_TRUE(run(kSlider, name, {{"value", "4"}}).ok);
        auto* group = find<QlirnColorIndexSliderGrp>(name.c_str());
        ErrorCollector warnings;
        EXPECT_EQ(edit(name, tested.flags), (Answer{tested.error.empty(), tested.error.empty() ? name : tested.error}));
        EXPECT_EQ(warnings.messages(),
                  tested.warning.empty() ? std::vector<std::string>{} : std::vector<std::string>{tested.warning});
        EXPECT_EQ(state(name), tested.state + ", invisible -1");
        EXPECT_EQ(group->lirnSlider()->value(), group->value());
    }
    // Refused at creation: there is no control.
    EXPECT_EQ(run(kSlider, "none", {{"minValue", "9"}, {"maxValue", "1"}}), (Answer{false, kOrder}));
    EXPECT_EQ(run(kSlider, "none", {{"exists", ""}}).text, "0");

    // The flag can clear the invisible index only.
    find<QlirnColorIndexSliderGrp>("case0")->setInvisibleIndex(2);
    EXPECT_TRUE(edit("case0", {{"invisible", "7"}}).ok);
    EXPECT_EQ(query("case0", "invisible"), "2");
    EXPECT_TRUE(edit("case0", {{"invisible", "11"}}).ok);
    EXPECT_EQ(query("case0", "invisible"), "-1");
}

TEST_P(Commands, WhatIsWrongChangesNothing)
{
    ASSERT_TRUE(run(kSlider, "wire", {{"value", "4"}, {"label", "\"a\""}}).ok);
    ASSERT_TRUE(run("image", "picture", {}).ok);
    const auto controls = panel().findChildren<QWidget*>().size();
    const struct
    {
        std::string command, object;
        Flags flags;
        const char* error;
    } cases[] = {
        {kSlider, "wire", {}, "The name 'wire' is not unique."},
        {"image", "wire", {}, "The name 'wire' is not unique."},
        {"image", "1st", {}, "no name"},
        {"image", "other", {{"parent", "\"nobody\""}}, "Parent 'nobody' not found."},
        {"image", "other", {{"value", "1"}}, "Unknown flag"},
        {"image", "other", {{"width", "-1"}}, "out of range"},
        {kSlider, "wire", {{"edit", ""}, {"label", "\"b\""}, {"value", "\"1\""}}, "type integer"},
        {kSlider, "wire", {{"edit", ""}, {"label", "\"b\""}, {"value", "1.5"}}, "type integer"},
        {kSlider, "wire", {{"edit", ""}, {"label", "\"b\""}, {"value", "4294967296"}}, "out of range"},
        {kSlider, "wire", {{"edit", ""}, {"label", "\"b\""}, {"parent", "\"panel\""}}, "can't be edited"},
        {kSlider, "wire", {{"edit", ""}, {"query", ""}, {"value", ""}}, "edit and query"},
        {kSlider, "wire", {{"query", ""}}, "no flag that could be queried"},
        {kSlider, "wire", {{"query", ""}, {"forceDragRefresh", ""}}, "no flag that could be queried"},
        {kSlider, "picture", {{"query", ""}, {"value", ""}}, "Control 'picture' not found."},
        {kSlider, "", {{"edit", ""}, {"value", "1"}}, "The name of a control is missing."},
        {"deleteUI", "nobody", {}, "Control 'nobody' not found."},
    };
    for (const auto& tested : cases) {
        const Answer answer = run(tested.command, tested.object, tested.flags);
        EXPECT_FALSE(answer.ok) << tested.error;
        EXPECT_THAT(answer.text, HasSubstr(tested.error));
        EXPECT_THAT(answer.text, HasSubstr(tested.command + ": "));
    }
    EXPECT_EQ(panel().findChildren<QWidget*>().size(), controls);
    EXPECT_EQ(state("wire") + query("wire", "label"), "4 in 0..10, invisible -1a");

    EXPECT_FALSE(edit("wire", {{"columnWidth", GetParam() == Door::kText ? "9 10" : "(9, 10)"}}).ok);
    EXPECT_TRUE(edit("wire", {{"columnWidth", GetParam() == Door::kText ? "1 10" : "(1, 10)"}}).ok);
    EXPECT_EQ(query("wire", "columnWidth"), "10 80 160");

    TiceControlBaseCmd::setDefaultParent(nullptr);
    EXPECT_THAT(run("image", "other", {}).text, HasSubstr("no parent"));
}

TEST_P(Commands, ImageShowsThePictureOfAFile)
{
    QTemporaryDir directory;
    QImage image(7, 5, QImage::Format_RGB32);
    image.fill(Qt::green);
    const QString file = directory.filePath("green.png");
    ASSERT_TRUE(image.save(file));

    EXPECT_EQ(run("image", "", {}), (Answer{true, "staticImage1"}));
    EXPECT_EQ(query("staticImage1", "image", "image"), "");
    auto* picture = find<QlirnStaticPicture>("staticImage1");
    ASSERT_TRUE(picture);
    EXPECT_EQ(edit("staticImage1", {{"image", "\"" + file.toStdString() + "\""}}, "image").text, "staticImage1");
    EXPECT_EQ(query("staticImage1", "image", "image"), file.toStdString());
    EXPECT_EQ(picture->pixmap(Qt::ReturnByValue).toImage().convertToFormat(image.format()), image);

    ErrorCollector warnings;
    EXPECT_TRUE(edit("staticImage1", {{"image", "\"missing.png\""}}, "image").ok);
    EXPECT_THAT(warnings.messages(), ElementsAre("Unable to load image: missing.png"));
    EXPECT_EQ(query("staticImage1", "image", "image"), "missing.png");
}

TEST_P(Commands, AControlThatIsGone)
{
    for (const std::string command : {kSlider, "image"}) {
        const std::string flag = command == "image" ? "image" : "value";
        // by Qt, before the command
        ASSERT_TRUE(run(command, "mine", {}).ok);
        delete gUIInventory->find("mine", nullptr, true, false);
        EXPECT_EQ(run(command, "mine", {{"query", ""}, {flag, ""}}),
                  (Answer{false, command + ": Control 'mine' not found."}));
        // by a command, before Qt
        EXPECT_EQ(run(command, "mine", {}).text, "mine");
        EXPECT_TRUE(run("deleteUI", "mine", {}).ok);
        EXPECT_FALSE(run(command, "mine", {{"query", ""}, {flag, ""}}).ok);
        // with what it is in
        EXPECT_TRUE(run("image", "outer", {}).ok);
        EXPECT_TRUE(run(command, "mine", {{"parent", "\"outer\""}}).ok);
        EXPECT_TRUE(run("deleteUI", "outer", {}).ok);
        EXPECT_EQ(run(command, "mine", {{"exists", ""}}).text, "0");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_THAT(panel().findChildren<QlirnWidgetGrp*>(), IsEmpty());
        EXPECT_THAT(panel().findChildren<QlirnStaticPicture*>(), IsEmpty());
    }
}

class Deletion : public CommandTest
{
};

TEST_F(Deletion, ByQtWhileACommandHoldsTheControl)
{
    TiceStaticImageCmd command("image2");
    ASSERT_TRUE(command.run({}).ok);
    struct Holding : TiceStaticImageCmd
    {
        using TiceStaticImageCmd::TiceStaticImageCmd;
        int doEditFlags() override
        {
            delete qControl();
            deleteControl();
            return 0;
        }
    } holding("image3");
    EXPECT_FALSE(holding.run({}).ok);
    EXPECT_EQ(panel().findChildren<QlirnStaticPicture*>().size(), 1);
}

TEST_F(Deletion, OfWhatIsHalfMade)
{
    struct Failing : TiceStaticImageCmd
    {
        using TiceStaticImageCmd::TiceStaticImageCmd;
        bool makeControl() override { return !TiceStaticImageCmd::makeControl(); }
    } failing("image2");
    EXPECT_EQ(failing.run({}).error, "image2: The control could not be made.");
    EXPECT_THAT(panel().findChildren<QlirnStaticPicture*>(), IsEmpty());
}

TEST_F(Deletion, ByWhoeverIsToldOfAWarning)
{
    const auto subscription =
        TerrorHandler::subscribe([](auto, const Tstring&) { delete gUIInventory->find("mine", nullptr, true, false); });
    EXPECT_FALSE(text("colorIndexSliderGrp -value 99 -label a -width 9 mine").ok);
    EXPECT_FALSE(text("image -image missing.png -width 9 mine").ok);
    EXPECT_TRUE(text("colorIndexSliderGrp -extraLabel a mine").ok);
    delete find<QlirnColorIndexSliderGrp>("mine")->lirnSlider();
    EXPECT_FALSE(text("colorIndexSliderGrp -edit -columnWidth 2 9 mine").ok) << "the column is gone";
}

TEST_F(Deletion, ClearForgetsWithoutDeleting)
{
    struct Clearing : TelfColorIndexSliderGrpCmd
    {
        using TelfColorIndexSliderGrpCmd::TelfColorIndexSliderGrpCmd;
        int doEditFlags() override
        {
            clear();
            deleteControl();
            return 0;
        }
    } clearing("slider2");
    EXPECT_FALSE(clearing.run({}).ok);
    EXPECT_EQ(panel().findChildren<QlirnColorIndexSliderGrp*>().size(), 1);
}
