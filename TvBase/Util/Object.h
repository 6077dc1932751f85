#pragma once

#include "TvBase/Util/Signal.h"
#include "TvBase/Util/String.h"

#include <vector>

/// The root of the toolkit's objects: windows, frames, application objects and parameters.
/// It gives automatic disconnection of the slots that target it (through `Trackable`), a name,
/// and the choice of being owned by another object through that object's auto-delete list.
/// There is no reference count. Not copyable.
class Object : public Trackable
{
public:
    explicit Object(String name = String());
    /// Deletes the owned objects, front to back, then lets `Trackable` disconnect every slot
    /// that targets this object. An object that dies before its owner leaves a null hole in the
    /// owner's list, so the owner does not delete it a second time.
    virtual ~Object();

    Object(Object const&) = delete;
    Object& operator=(Object const&) = delete;

    /// The name given at construction, for diagnostics and lookup.
    String const& GetName() const { return name; }

    /// Makes this object the owner of `child`, which it deletes when it dies. Nothing happens
    /// when `child` is null, is this object, already has an owner, is already in the list, or
    /// has already been taken in charge by another object.
    void AddAutoDelete(Object* child);

    /// The object that deletes this one, or null. Does not own.
    Object* GetOwner() const { return owner; }
    /// True once another object has taken charge of this one.
    bool IsAutoDeleted() const { return autoDeleted; }
    /// True from the start of the destructor.
    bool IsDestructing() const { return destructing; }
    /// The owned objects in the order of adding; an entry is null once its object has died.
    std::vector<Object*> const& GetAutoDeleteList() const { return autoDelete; }

private:
    String name;
    bool destructing = false;
    bool autoDeleted = false;
    Object* owner = nullptr;
    std::vector<Object*> autoDelete;
};
