#include "TvBase/Util/Object.h"

#include <algorithm>

Object::Object(String name) : name(std::move(name)) {}

Object::~Object()
{
    if (!destructing)
    {
        destructing = true;
        // A dying owner is walking its list itself and nulls each entry after the delete, so
        // only a child that goes first needs to leave a hole behind.
        if (owner && !owner->destructing)
        {
            auto& list = owner->autoDelete;
            auto it = std::find(list.begin(), list.end(), this);
            if (it != list.end())
                *it = nullptr;
        }
        // The list is read again on every round: a dying child may touch it.
        for (std::size_t i = 0; i < autoDelete.size(); ++i)
        {
            Object* child = autoDelete[i];
            if (!child)
                continue;
            delete child;
            autoDelete[i] = nullptr;
        }
    }
    // The list and the name are released by their own destructors; `Trackable` then disconnects
    // every slot that targets this object.
}

void Object::AddAutoDelete(Object* child)
{
    if (!child || child == this || child->owner || child->autoDeleted)
        return;
    if (std::find(autoDelete.begin(), autoDelete.end(), child) != autoDelete.end())
        return;
    child->autoDeleted = true;
    child->owner = this;
    autoDelete.push_back(child);
}
