#pragma once
// A field of a window's model that tells its owner when its value changes,
// so the windows bound to the model follow every change by themselves: an
// assignment that changes the value calls the owner's fieldChanged().
// Reads go through the conversion or through ->.

#include <utility>

namespace vonnel {

// The model that owns watched fields.
class FieldOwner {
public:
    // field: the address of the Watched that changed.
    virtual void fieldChanged(const void* field) = 0;

protected:
    ~FieldOwner() = default;
};

template <class T>
class Watched {
public:
    // Without an owner (a value on its own) nobody is told.
    Watched(FieldOwner* owner = nullptr, T value = T()) : m_owner(owner), m_value(std::move(value)) {}
    Watched(const Watched& other) = default;
    // Takes the other's value, keeps its own owner.
    Watched& operator=(const Watched& other) { return *this = other.m_value; }

    Watched& operator=(const T& value)
    {
        if (m_value == value)
            return *this;
        m_value = value;
        if (m_owner)
            m_owner->fieldChanged(this);
        return *this;
    }
    Watched& operator+=(const T& more) { return *this = m_value + more; }
    void clear() { *this = T(); }
    // Changes the value in place: edit([](QStringList& l) { l << x; }).
    template <class F>
    void edit(F&& change)
    {
        T next = m_value;
        change(next);
        *this = next;
    }

    operator const T&() const { return m_value; }
    const T& value() const { return m_value; }
    const T* operator->() const { return &m_value; }

    bool operator==(const Watched& other) const { return m_value == other.m_value; }
    template <class U>
    bool operator==(const U& other) const { return m_value == other; }

private:
    FieldOwner* m_owner;
    T m_value;
};

}  // namespace vonnel
