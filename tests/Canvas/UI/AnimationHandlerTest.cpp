#include "Canvas/UI/AnimationHandler.h"

#include "Canvas/UI/Canvas.h"
#include "Canvas/UI/Frame.h"
#include "Canvas/UI/Window.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <vector>

using UI::AnimationHandler;
using UI::Point;
using UI::Rect;
using UI::Size;

namespace
{

/// A window that keeps every generic value it is handed.
class Animated : public UI::Window
{
public:
    Animated(UI::Frame* frame, char const* name) : Window(frame, nullptr, name) {}
    void UpdateGenericAnimation(float value) override { generic.push_back(value); }
    std::vector<float> generic;
    std::string text;
};

bool setText(UI::Window* w, String const& text)
{
    Animated* a = dynamic_cast<Animated*>(w);
    if (!a)
        return false;
    a->text = text.CStr();
    return true;
}

/// A frame without a native window, its handler on a clock that the test moves, and a window.
struct Scene
{
    UI::Canvas canvas{"Animation Test"};
    std::unique_ptr<UI::Frame> frame;
    unsigned int now = 1000;
    AnimationHandler* handler = nullptr;
    Animated* w = nullptr;
    std::vector<std::string> log;

    Scene()
    {
        frame.reset(new UI::Frame(&canvas, nullptr, nullptr, Point(), "", Rect(0, 99, 0, 99)));
        handler = frame->GetAnimationHandler();
        handler->SetClock([this] { return now; });
        w = new Animated(frame.get(), "W");
    }

    AnimationHandler::Callback note(std::string const& what)
    {
        return [this, what] { log.push_back(what); };
    }

    void At(unsigned int t)
    {
        now = t;
        handler->tick();
    }
};

} // namespace

TEST(AnimationHandlerStart, DurationZeroEndsAtOnceOtherwiseTheStartAppliesAndTheLowestIdIsTaken)
{
    Scene s;
    unsigned int id = s.handler->Alpha(1u, s.w, 0, 10, 200, {}, s.note("done"));
    EXPECT_EQ(id, 0u);
    EXPECT_EQ(s.w->GetAlpha(), 200);
    EXPECT_EQ(s.log, std::vector<std::string>{"done"});
    EXPECT_EQ(s.handler->GetNumAnimations({}), 0u);

    id = s.handler->Geometry(1u, s.w, 0, Rect(0, 9, 0, 9), Rect(5, 24, 6, 15));
    EXPECT_EQ(id, 0u);
    EXPECT_EQ(s.w->GetGeometry(), Rect(5, 24, 6, 15));

    // A running animation applies its start value and takes the lowest free id.
    EXPECT_EQ(s.handler->Alpha(1u, s.w, 100, 40, 240), 1u);
    EXPECT_EQ(s.w->GetAlpha(), 40);
    EXPECT_EQ(s.handler->Generic(1u, s.w, 100, 2.0f, 4.0f), 2u);
    EXPECT_EQ(s.w->generic, std::vector<float>{2.0f});
    EXPECT_EQ(s.handler->Generic(2u, s.w, 100, 0.0f, 1.0f), 3u);
    s.handler->EndAnimation(2, false);
    EXPECT_EQ(s.handler->Generic(2u, s.w, 100, 0.0f, 1.0f), 2u);
    EXPECT_EQ(s.handler->GetInfo(2)->start, 1000u);
}

TEST(AnimationHandlerTick, InterpolatesAlphaAndGeometryRoundingHalfAwayFromZero)
{
    Scene s;
    s.handler->AlphaGeometry(1u, s.w, 1000, 0, 255, Rect(0, 9, 0, 9), Rect(-11, 30, 100, 103), {},
                             s.note("end"));
    s.At(1250);
    EXPECT_EQ(s.w->GetAlpha(), 64);                      // 63.75
    EXPECT_EQ(s.w->GetGeometry(), Rect(-3, 14, 25, 33)); // -2.75, 14.25, 25, 32.5
    s.At(1500);
    EXPECT_EQ(s.w->GetAlpha(), 128);                     // 127.5 rounds up
    EXPECT_EQ(s.w->GetGeometry(), Rect(-6, 20, 50, 56)); // -5.5 rounds away from zero
    EXPECT_TRUE(s.log.empty());
    s.At(2600);
    EXPECT_EQ(s.w->GetAlpha(), 255);
    EXPECT_EQ(s.w->GetGeometry(), Rect(-11, 30, 100, 103));
    EXPECT_EQ(s.log, std::vector<std::string>{"end"});
    EXPECT_EQ(s.handler->GetNumAnimations({}), 0u);
}

TEST(AnimationHandlerTick, BaseAlphaFollowsOnlyWithItsFlagEqualEndsSkipTheLineAndTheFrameTicks)
{
    Scene s;
    Animated* a = new Animated(s.frame.get(), "A");
    Animated* b = new Animated(s.frame.get(), "B");
    s.handler->Alpha(1u, a, 100, 0, 100, {}, {}, false, true);
    s.handler->Alpha(1u, b, 100, 0, 100);
    s.At(1050);
    EXPECT_EQ(a->GetBaseAlpha(), 50);
    EXPECT_EQ(b->GetBaseAlpha(), 255);
    s.handler->Alpha(2u, b, 100, 77, 77);
    s.At(1070);
    EXPECT_EQ(b->GetAlpha(), 77); // both run on b; the later id is applied last

    // The frame's timer tick drives the handler.
    s.handler->Generic(1u, s.w, 100, 0.0f, 10.0f);
    s.now = 1130;
    s.frame->tickTimers();
    EXPECT_FLOAT_EQ(s.w->generic.back(), 6.0f);
}

TEST(AnimationHandlerTick, TextLengthTypesTheTargetOutWhenTheClassMatches)
{
    Scene s;
    AnimationHandler::SetTextSetter(AnimationHandler::SingleLineText, &setText);
    s.handler->TextLength(1u, s.w, AnimationHandler::SingleLineText, 100, "", "Hello world");
    EXPECT_EQ(s.w->text, "");
    s.At(1050);
    EXPECT_EQ(s.w->text, "Hello "); // 5.5 characters rounds to 6
    s.At(1100);
    EXPECT_EQ(s.w->text, "Hello world");
    // No setter for the multi-line kind: the step is skipped, the animation still ends.
    AnimationHandler::SetTextSetter(AnimationHandler::MultiLineText, nullptr);
    s.w->text = "kept";
    s.handler->TextLength(1u, s.w, AnimationHandler::MultiLineText, 100, "a", "abc", {},
                          s.note("multi"));
    s.At(1300);
    EXPECT_EQ(s.w->text, "kept");
    EXPECT_EQ(s.log, std::vector<std::string>{"multi"});
    AnimationHandler::SetTextSetter(AnimationHandler::SingleLineText, nullptr);
}

TEST(AnimationHandlerChain, AChildStartsWhenItsParentEndsNotWhenAsked)
{
    Scene s;
    unsigned int first = s.handler->Generic(1u, s.w, 100, 0.0f, 1.0f, {}, s.note("first"));
    s.now = 1040;
    unsigned int second = s.handler->Generic(1u, s.w, 200, 10.0f, 20.0f, first, s.note("second"));
    ASSERT_NE(second, 0u);
    EXPECT_FALSE(s.handler->GetInfo(second)->active);
    s.w->generic.clear();
    s.At(1080);
    EXPECT_EQ(s.w->generic, std::vector<float>{0.8f}); // the child waits
    // The tick comes late; the child still counts from the parent's end at 1100.
    s.At(1150);
    ASSERT_NE(s.handler->GetInfo(second), nullptr);
    EXPECT_TRUE(s.handler->GetInfo(second)->active);
    EXPECT_EQ(s.handler->GetInfo(second)->start, 1100u);
    s.At(1200);
    EXPECT_FLOAT_EQ(s.w->generic.back(), 15.0f);
    s.At(1300);
    EXPECT_EQ(s.log, (std::vector<std::string>{"first", "second"}));
}

TEST(AnimationHandlerChain, EndingByHandStartsChildrenNowOrRemovesThem)
{
    Scene s;
    unsigned int parent = s.handler->Generic(1u, s.w, 100, 0.0f, 1.0f, {}, s.note("parent"));
    unsigned int child = s.handler->Generic(1u, s.w, 100, 0.0f, 1.0f, parent, s.note("child"));
    s.now = 1030;
    s.handler->EndAnimation(parent, false);
    EXPECT_EQ(s.log, std::vector<std::string>{"parent"});
    ASSERT_NE(s.handler->GetInfo(child), nullptr);
    EXPECT_EQ(s.handler->GetInfo(child)->start, 1030u);

    unsigned int p2 = s.handler->Generic(2u, s.w, 100, 0.0f, 1.0f, {}, s.note("p2"));
    unsigned int c2 = s.handler->Generic(2u, s.w, 100, 0.0f, 1.0f, p2, s.note("c2"));
    unsigned int g2 = s.handler->Generic(2u, s.w, 100, 0.0f, 1.0f, c2, s.note("g2"));
    s.handler->EndAnimation(p2, true);
    EXPECT_EQ(s.handler->GetInfo(c2), nullptr);
    EXPECT_EQ(s.handler->GetInfo(g2), nullptr);
    EXPECT_EQ(s.log, (std::vector<std::string>{"parent", "p2"}));
    s.handler->EndAnimation(0, true);
    s.handler->EndAnimation(999, false);
}

TEST(AnimationHandlerCategories, CountAskAndRemoveByCategory)
{
    Scene s;
    s.handler->Generic(5u, s.w, 100, 0.0f, 1.0f, {}, s.note("a"));
    s.handler->Generic(5u, s.w, 100, 0.0f, 1.0f, {}, s.note("b"));
    s.handler->Generic(6u, s.w, 100, 0.0f, 1.0f, {}, s.note("c"));
    s.handler->Generic({}, s.w, 100, 0.0f, 1.0f, {}, s.note("d"));
    EXPECT_EQ(s.handler->GetNumAnimations(5u), 2u);
    EXPECT_EQ(s.handler->GetNumAnimations(6u), 1u);
    EXPECT_EQ(s.handler->GetNumAnimations({}), 4u);
    EXPECT_TRUE(s.handler->IsCategoryActive(6u));
    EXPECT_FALSE(s.handler->IsCategoryActive(7u));
    s.handler->RemoveCategory(5u);
    EXPECT_EQ(s.log, (std::vector<std::string>{"a", "b"}));
    EXPECT_FALSE(s.handler->IsCategoryActive(5u));
    EXPECT_EQ(s.handler->GetNumAnimations({}), 2u);
}

TEST(AnimationHandlerLifetime, ADeletedWindowLosesItsAnimationsWithoutCallbacks)
{
    Scene s;
    Animated* doomed = new Animated(s.frame.get(), "Doomed");
    Animated* other = new Animated(s.frame.get(), "Other");
    unsigned int a = s.handler->Alpha(1u, doomed, 100, 0, 255, {}, s.note("doomed"));
    s.handler->Generic(1u, other, 100, 0.0f, 1.0f, a, s.note("other"));
    s.At(1050);
    delete doomed;
    EXPECT_EQ(s.handler->GetInfo(a), nullptr);
    EXPECT_EQ(s.handler->GetNumAnimations({}), 1u);
    s.At(1200);
    EXPECT_EQ(s.log, std::vector<std::string>{"other"});
}

TEST(AnimationHandlerLifetime, ACallbackMayStartAndEndOthersAndDeleteItsWindow)
{
    Scene s;
    Animated* victim = new Animated(s.frame.get(), "Victim");
    s.handler->Generic(1u, victim, 500, 0.0f, 1.0f, {}, s.note("victim"));
    s.handler->Generic(1u, s.w, 100, 0.0f, 1.0f, {},
                       AnimationHandler::Callback(
                           [&]
                           {
                               delete victim;
                               s.handler->Generic(2u, s.w, 100, 0.0f, 1.0f, {}, s.note("next"));
                           }));
    s.At(1100);
    EXPECT_EQ(s.handler->GetNumAnimations(1u), 0u);
    EXPECT_EQ(s.handler->GetNumAnimations(2u), 1u);
    s.At(1200);
    EXPECT_EQ(s.log, std::vector<std::string>{"next"});
}

TEST(AnimationHandlerEnabled, ADisabledHandlerFreezesAndEndsNewOnesUnlessForced)
{
    Scene s;
    s.handler->Alpha(1u, s.w, 100, 0, 100);
    s.handler->SetEnabled(false);
    s.At(1050);
    EXPECT_EQ(s.w->GetAlpha(), 0);
    EXPECT_EQ(s.handler->Alpha(2u, s.w, 100, 10, 30, {}, s.note("now")), 0u);
    EXPECT_EQ(s.w->GetAlpha(), 30);
    EXPECT_EQ(s.log, std::vector<std::string>{"now"});
    EXPECT_NE(s.handler->Alpha(2u, s.w, 100, 10, 30, {}, {}, true), 0u);
    EXPECT_EQ(s.w->GetAlpha(), 10);
    s.handler->SetEnabled(true);
    s.At(1100);
    EXPECT_EQ(s.handler->GetNumAnimations(1u), 0u);
}

TEST(AnimationHandlerTick, TimesAcrossTheClocksWrapStillOrder)
{
    Scene s;
    s.now = UINT_MAX - 49;
    s.handler->Generic(1u, s.w, 100, 0.0f, 100.0f, {}, s.note("end"));
    s.At(UINT_MAX);
    EXPECT_FLOAT_EQ(s.w->generic.back(), 49.0f);
    s.At(20); // 70 ms after the start, past the wrap
    EXPECT_FLOAT_EQ(s.w->generic.back(), 70.0f);
    EXPECT_TRUE(s.log.empty());
    s.At(50);
    EXPECT_EQ(s.log, std::vector<std::string>{"end"});
}
