#include "TvBase/Util/Signal.h"

#include "TvBase/Util/Object.h"
#include "TvBase/Util/String.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

typedef std::vector<std::string> Log;

/// A slot target that writes what it receives into a shared log.
class Listener : public Trackable
{
public:
    Listener(Log& log, std::string tag) : log(log), tag(std::move(tag)) {}

    void slot0() { log.push_back(tag); }
    void slotConst(int a) const { log.push_back(tag + " const:" + std::to_string(a)); }
    void slot1(int a) { log.push_back(tag + ":" + std::to_string(a)); }
    void slotText(String s) { log.push_back(tag + ":" + s.CStr()); }
    void slotTextRef(String const& s) { log.push_back(tag + ":" + s.CStr()); }
    void slot2(int a, String b) { log.push_back(tag + ":" + std::to_string(a) + "," + b.CStr()); }
    void slot3(int a, int b, int c) { log.push_back(tag + ":" + join({a, b, c})); }
    void slot4(int a, int b, int c, int d) { log.push_back(tag + ":" + join({a, b, c, d})); }
    void slot5(int a, int b, int c, int d, int e)
    {
        log.push_back(tag + ":" + join({a, b, c, d, e}));
    }
    void slot6(int a, int b, int c, int d, int e, int f)
    {
        log.push_back(tag + ":" + join({a, b, c, d, e, f}));
    }
    void slot7(int a, int b, int c, int d, int e, int f, int g)
    {
        log.push_back(tag + ":" + join({a, b, c, d, e, f, g}));
    }

    static std::string join(std::vector<int> const& v)
    {
        std::string s;
        for (std::size_t i = 0; i < v.size(); ++i)
            s += (i ? "," : "") + std::to_string(v[i]);
        return s;
    }

    Log& log;
    std::string tag;
};

} // namespace

TEST(SignalOrder, SlotsRunInConnectionOrder)
{
    Log log;
    Listener a(log, "A"), b(log, "B"), c(log, "C");
    Signal<int> signal;
    signal.Connect(&Listener::slot1, &a);
    signal.Connect(&Listener::slot1, &b);
    signal.Connect(&Listener::slot1, &c);
    signal(7);
    EXPECT_EQ(log, (Log{"A:7", "B:7", "C:7"}));

    // A slot added later runs after all the earlier ones, whatever form it takes.
    signal.Connect(&a, [&log](int x) { log.push_back("F:" + std::to_string(x)); });
    signal.Connect(&Listener::slot0, &b);
    log.clear();
    signal(1);
    EXPECT_EQ(log, (Log{"A:1", "B:1", "C:1", "F:1", "B"}));
}

TEST(SignalConnectForms, MemberWithTheSignalsArgumentsAtEveryArity)
{
    Log log;
    Listener l(log, "L");
    Signal<> s0;
    Signal<int> s1;
    Signal<int, String> s2;
    Signal<int, int, int> s3;
    Signal<int, int, int, int> s4;
    Signal<int, int, int, int, int> s5;
    Signal<int, int, int, int, int, int> s6;
    Signal<int, int, int, int, int, int, int> s7;
    s0.Connect(&Listener::slot0, &l);
    s1.Connect(&Listener::slot1, &l);
    s2.Connect(&Listener::slot2, &l);
    s3.Connect(&Listener::slot3, &l);
    s4.Connect(&Listener::slot4, &l);
    s5.Connect(&Listener::slot5, &l);
    s6.Connect(&Listener::slot6, &l);
    s7.Connect(&Listener::slot7, &l);
    s0();
    s1(1);
    s2(2, "two");
    s3(1, 2, 3);
    s4(1, 2, 3, 4);
    s5(1, 2, 3, 4, 5);
    s6(1, 2, 3, 4, 5, 6);
    s7(1, 2, 3, 4, 5, 6, 7);
    EXPECT_EQ(log, (Log{"L", "L:1", "L:2,two", "L:1,2,3", "L:1,2,3,4", "L:1,2,3,4,5",
                        "L:1,2,3,4,5,6", "L:1,2,3,4,5,6,7"}));

    // A const member function serves as well.
    Signal<int> value;
    value.Connect(&Listener::slotConst, &l);
    log.clear();
    value(8);
    EXPECT_EQ(log, (Log{"L const:8"}));

    // A slot that takes the argument by reference to const serves a by-value signal.
    Signal<String> text;
    text.Connect(&Listener::slotTextRef, &l);
    log.clear();
    text("ref");
    EXPECT_EQ(log, (Log{"L:ref"}));

    // A member without arguments drops the signal's.
    Signal<int, String> d2;
    Signal<int, int, int, int, int, int, int> d7;
    d2.Connect(&Listener::slot0, &l);
    d7.Connect(&Listener::slot0, &l);
    log.clear();
    d2(5, "x");
    d7(1, 2, 3, 4, 5, 6, 7);
    EXPECT_EQ(log, (Log{"L", "L"}));
}

TEST(SignalConnectForms, BoundValuesFunctionObjectsAndChains)
{
    Log log;
    Listener l(log, "L");
    Signal<> clicked;
    Signal<int> changed;

    // The text is converted to `String` at connection: later changes to the buffer don't show.
    char buffer[] = "first";
    clicked.Connect(&Listener::slotText, &l, buffer);
    clicked.Connect(&Listener::slotTextRef, &l, static_cast<char const*>(buffer));
    buffer[0] = 'X';
    // A double bound to an int parameter is converted once, at connection.
    clicked.Connect(&Listener::slot1, &l, 3.75);
    clicked.Connect(&Listener::slot2, &l, 9, "nine");
    // The signal's own argument is dropped in favour of the bound one.
    changed.Connect(&Listener::slot1, &l, 42);
    clicked();
    changed(-1);
    EXPECT_EQ(log, (Log{"L:first", "L:first", "L:3", "L:9,nine", "L:42"}));

    // Function objects at every arity.
    log.clear();
    auto add = [&log](std::string s) { log.push_back(s); };
    Signal<> s0;
    Signal<String> s1;
    Signal<int, int> s2;
    Signal<int, int, int, int, int, int, int> s7;
    s0.Connect(&l, [&] { add("f0"); });
    s1.Connect(&l, [&](String s) { add(std::string("f1:") + s.CStr()); });
    s2.Connect(&l, [&](int a, int b) { add("f2:" + Listener::join({a, b})); });
    s7.Connect(&l,
               [&](int a, int b, int c, int d, int e, int f, int g) {
                   add("f7:" + Listener::join({a, b, c, d, e, f, g}));
               });
    s0();
    s1("s");
    s2(1, 2);
    s7(7, 6, 5, 4, 3, 2, 1);
    EXPECT_EQ(log, (Log{"f0", "f1:s", "f2:1,2", "f7:7,6,5,4,3,2,1"}));

    // A null tracked object ties the function to nothing: it keeps running.
    int untied = 0;
    Signal<> s;
    s.Connect(nullptr, [&] { ++untied; });
    s();
    EXPECT_EQ(untied, 1);

    // Chained signals emit in turn.
    log.clear();
    Signal<int, String> outer;
    Signal<int, String> inner;
    inner.Connect(&Listener::slot2, &l);
    outer.Connect(inner);
    outer(3, "chained");

    Signal<> button;
    Signal<int> choose;
    choose.Connect(&Listener::slot1, &l);
    button.Connect(choose, 17);
    Signal<void> relay;
    relay.Connect(button);
    relay();
    EXPECT_EQ(log, (Log{"L:3,chained", "L:17"}));
}

TEST(SignalEmission, SlotConnectedDuringEmissionWaitsForTheNextOne)
{
    Log log;
    Listener late(log, "late");
    Signal<> signal;
    Listener first(log, "first");
    bool added = false;
    signal.Connect(&first,
                   [&]
                   {
                       log.push_back("first");
                       if (!added)
                       {
                           added = true;
                           signal.Connect(&Listener::slot0, &late);
                       }
                   });
    signal();
    EXPECT_EQ(log, (Log{"first"}));
    signal();
    EXPECT_EQ(log, (Log{"first", "first", "late"}));
}

TEST(SignalEmission, DisconnectionDuringEmissionIsImmediate)
{
    Log log;
    Listener a(log, "A"), c(log, "C");
    Signal<> signal;
    Connection self;
    Connection later;
    // Slot A disconnects itself and the slot after it; neither runs again, C still does.
    self = signal.Connect(&a,
                          [&]
                          {
                              log.push_back("A");
                              self.Disconnect();
                              later.Disconnect();
                          });
    later = signal.Connect(&Listener::slot0, &a);
    signal.Connect(&Listener::slot0, &c);
    signal();
    EXPECT_EQ(log, (Log{"A", "C"}));
    EXPECT_FALSE(self.IsConnected());
    EXPECT_FALSE(later.IsConnected());
    signal();
    EXPECT_EQ(log, (Log{"A", "C", "C"}));
    EXPECT_EQ(signal.GetSlotCount(), 1u);
}

TEST(SignalEmission, EmissionMayRecurseAndCopiesByValueArgumentsForEachSlot)
{
    Log log;
    Listener l(log, "L");
    Signal<int> recursive;
    recursive.Connect(&l,
                      [&](int depth)
                      {
                          log.push_back("in:" + std::to_string(depth));
                          if (depth > 0)
                              recursive(depth - 1);
                          log.push_back("out:" + std::to_string(depth));
                      });
    recursive(2);
    EXPECT_EQ(log, (Log{"in:2", "in:1", "in:0", "out:0", "out:1", "out:2"}));

    std::vector<String> seen;
    Signal<String> signal;

    signal.Connect(&l,
                   [&](String s)
                   {
                       s += "!"; // changes only this slot's copy
                       seen.push_back(s);
                   });
    signal.Connect(&l, [&](String s) { seen.push_back(s); });
    String text("hey");
    signal(text);
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0], "hey!");
    EXPECT_EQ(seen[1], "hey");
    EXPECT_EQ(text, "hey");
}

TEST(SignalEmission, ExceptionFromSlotReachesTheEmitterAndStopsLaterSlots)
{
    Log log;
    Listener a(log, "A"), b(log, "B");
    Signal<> signal;
    signal.Connect(&Listener::slot0, &a);
    signal.Connect(&a, [] { throw std::runtime_error("slot failed"); });
    signal.Connect(&Listener::slot0, &b);
    EXPECT_THROW(signal(), std::runtime_error);
    EXPECT_EQ(log, (Log{"A"}));
    // The signal stays usable and keeps every slot.
    EXPECT_EQ(signal.GetSlotCount(), 3u);
}

TEST(SignalLifetime, ConnectionsOnlyDisconnectWhenAsked)
{
    Log log;
    Listener l(log, "L");
    Signal<> signal;
    {
        Connection c = signal.Connect(&Listener::slot0, &l);
        Connection copy = c;
        EXPECT_TRUE(copy.IsConnected());
    }
    signal.Connect(&Listener::slot0, &l); // result dropped at once
    signal();
    EXPECT_EQ(log, (Log{"L", "L"}));

    // Copies of a connection share one link.
    Signal<> other;
    Connection c = other.Connect(&Listener::slot0, &l);
    Connection copy = c;
    copy.Disconnect();
    EXPECT_FALSE(c.IsConnected());
    log.clear();
    other();
    EXPECT_TRUE(log.empty());
    c.Disconnect(); // twice is harmless
    Connection none;
    none.Disconnect();
    EXPECT_FALSE(none.IsConnected());
}

TEST(SignalLifetime, SlotsStopWhenTheirTargetDies)
{
    Log log;
    Signal<int> signal;
    Signal<> bound;
    auto target = std::make_unique<Listener>(log, "T");
    Connection c = signal.Connect(&Listener::slot1, target.get());
    bound.Connect(&Listener::slot1, target.get(), 5);
    bound.Connect(&Listener::slot2, target.get(), 5, "x");
    signal(1);
    target.reset();
    EXPECT_FALSE(c.IsConnected());
    signal(2);
    bound();
    EXPECT_EQ(log, (Log{"T:1"}));
    EXPECT_EQ(signal.GetSlotCount(), 0u);

    // A function object dies with its tracked object.
    int calls = 0;
    auto tracked = std::make_unique<Object>("tracked");
    signal.Connect(tracked.get(), [&](int) { ++calls; });
    signal(1);
    tracked.reset();
    signal(2);
    EXPECT_EQ(calls, 1);
}

TEST(SignalLifetime, SlotThatDestroysALaterTargetPreventsItsCall)
{
    Log log;
    Signal<> signal;
    auto victim = std::make_unique<Listener>(log, "victim");
    Listener killer(log, "killer");
    signal.Connect(&killer,
                   [&]
                   {
                       log.push_back("killer");
                       victim.reset();
                   });
    signal.Connect(&Listener::slot0, victim.get());
    Object* functionTarget = new Object("function target");
    signal.Connect(functionTarget, [&] { log.push_back("function"); });
    signal.Connect(&killer,
                   [&]
                   {
                       delete functionTarget;
                       functionTarget = nullptr;
                   });
    signal.Connect(&Listener::slot0, &killer);
    signal();
    // The victim's slot came after the killer: it never runs. The function slot ran before its
    // tracked object was deleted, later in the same emission.
    EXPECT_EQ(log, (Log{"killer", "function", "killer"}));
    log.clear();
    signal();
    EXPECT_EQ(log, (Log{"killer", "killer"}));
}

TEST(SignalLifetime, ChainedSignalThatDiesBreaksTheChain)
{
    Log log;
    Listener l(log, "L");
    Signal<> outer;
    auto inner = std::make_unique<Signal<>>();
    auto withValue = std::make_unique<Signal<int>>();
    inner->Connect(&Listener::slot0, &l);
    withValue->Connect(&Listener::slot1, &l);
    outer.Connect(*inner);
    outer.Connect(*withValue, 4);
    outer();
    inner.reset();
    withValue.reset();
    outer();
    EXPECT_EQ(log, (Log{"L", "L:4"}));
}
