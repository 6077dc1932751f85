#include "TvBase/Util/Object.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

typedef std::vector<std::string> Log;

/// An object that notes its death in a shared log.
class Noted : public Object
{
public:
    Noted(Log& log, char const* name) : Object(name), log(log) {}
    ~Noted() override { log.push_back(std::string("~") + GetName().CStr()); }

    void slotPing() { log.push_back(std::string("ping ") + GetName().CStr()); }

    Log& log;
};

/// A child that, while it dies, hands one more object to its dying owner.
class Handover : public Noted
{
public:
    Handover(Log& log, char const* name, Object* owner, Object* extra)
        : Noted(log, name), owner(owner), extra(extra)
    {
    }
    ~Handover() override { owner->AddAutoDelete(extra); }

    Object* owner;
    Object* extra;
};

} // namespace

TEST(ObjectAutoDelete, OwnerDeletesItsChildrenOnceInOrderOfAdding)
{
    Log log;
    Noted* owner = new Noted(log, "owner");
    Noted* a = new Noted(log, "a");
    Noted* b = new Noted(log, "b");
    Noted* c = new Noted(log, "c");
    owner->AddAutoDelete(a);
    owner->AddAutoDelete(b);
    owner->AddAutoDelete(c);
    EXPECT_EQ(a->GetOwner(), owner);
    EXPECT_TRUE(b->IsAutoDeleted());
    EXPECT_EQ(owner->GetOwner(), nullptr);
    EXPECT_FALSE(owner->IsAutoDeleted());
    delete owner;
    // The owner's own destructor body runs first; its children die in the base destructor.
    EXPECT_EQ(log, (Log{"~owner", "~a", "~b", "~c"}));
    { // Adding twice or nothing changes nothing.
        Log log;
        Noted owner(log, "owner");
        Noted* child = new Noted(log, "child");
        owner.AddAutoDelete(child);
        owner.AddAutoDelete(child);
        owner.AddAutoDelete(nullptr);
        owner.AddAutoDelete(&owner);
        ASSERT_EQ(owner.GetAutoDeleteList().size(), 1u);
        EXPECT_EQ(owner.GetAutoDeleteList()[0], child);
        EXPECT_EQ(owner.GetOwner(), nullptr);
    }
    { // Child belongs to its first owner only.
        Log log;
        Noted* first = new Noted(log, "first");
        Noted* second = new Noted(log, "second");
        Noted* child = new Noted(log, "child");
        first->AddAutoDelete(child);
        second->AddAutoDelete(child);
        EXPECT_EQ(child->GetOwner(), first);
        EXPECT_TRUE(second->GetAutoDeleteList().empty());
        delete second;
        EXPECT_EQ(log, (Log{"~second"}));
        delete first;
        EXPECT_EQ(log, (Log{"~second", "~first", "~child"}));
    }
}

TEST(ObjectAutoDelete, ChildrenDyingFirstChainsAndHandOvers)
{
    Log log;
    Noted* owner = new Noted(log, "owner");
    Noted* a = new Noted(log, "a");
    Noted* b = new Noted(log, "b");
    owner->AddAutoDelete(a);
    owner->AddAutoDelete(b);
    delete a;
    // The list does not shrink: the entry becomes null.
    ASSERT_EQ(owner->GetAutoDeleteList().size(), 2u);
    EXPECT_EQ(owner->GetAutoDeleteList()[0], nullptr);
    EXPECT_EQ(owner->GetAutoDeleteList()[1], b);
    delete owner;
    EXPECT_EQ(log, (Log{"~a", "~owner", "~b"}));
    { // Ownership chains die from the top.
        Log log;
        Noted* root = new Noted(log, "root");
        Noted* mid = new Noted(log, "mid");
        Noted* leaf = new Noted(log, "leaf");
        Noted* sibling = new Noted(log, "sibling");
        root->AddAutoDelete(mid);
        mid->AddAutoDelete(leaf);
        root->AddAutoDelete(sibling);
        delete root;
        EXPECT_EQ(log, (Log{"~root", "~mid", "~leaf", "~sibling"}));
    }
    { // Object handed over during the walk is deleted too.
        Log log;
        Noted* owner = new Noted(log, "owner");
        Noted* extra = new Noted(log, "extra");
        owner->AddAutoDelete(new Handover(log, "handover", owner, extra));
        owner->AddAutoDelete(new Noted(log, "last"));
        delete owner;
        // The list is read again on every round, so the object added by a dying child is found.
        EXPECT_EQ(log, (Log{"~owner", "~handover", "~last", "~extra"}));
    }
    { // Destructing flag is set while children die.
        Log log;
        struct Watcher : Noted
        {
            Watcher(Log& log, Object* owner) : Noted(log, "watcher"), watched(owner) {}
            ~Watcher() override
            {
                log.push_back(watched->IsDestructing() ? "owner destructing" : "owner alive");
            }
            Object* watched;
        };
        Object* owner = new Object("owner");
        EXPECT_FALSE(owner->IsDestructing());
        owner->AddAutoDelete(new Watcher(log, owner));
        delete owner;
        EXPECT_EQ(log, (Log{"owner destructing", "~watcher"}));
    }
}

TEST(ObjectLifetime, SlotsTargetingAnObjectDieWithIt)
{
    Log log;
    Signal<> signal;
    Noted* owner = new Noted(log, "owner");
    Noted* child = new Noted(log, "child");
    owner->AddAutoDelete(child);
    signal.Connect(&Noted::slotPing, owner);
    signal.Connect(&Noted::slotPing, child);
    signal.Connect(child, [&] { log.push_back("function"); });
    signal();
    delete owner; // takes the child along, and every slot of both
    signal();
    EXPECT_EQ(log, (Log{"ping owner", "ping child", "function", "~owner", "~child"}));
    EXPECT_TRUE(signal.IsEmpty());
}
