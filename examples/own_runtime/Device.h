#pragma once

#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <vector>

/// The host's side of this runtime: a device of a plant, its readings, and the devices below it. A node whose
/// last field, "devices", links the devices below; they die with it.
class Device : public Orvane::Node
{
public:
    struct Reading
    {
        const char* name;
        Orvane::NodePartDataType dataType;
        const char* value;       ///< at first, as text
        const char* description; ///< one line for the user
    };

    /// \a type is what kind of device it is, \a name must not be empty.
    Device(const char* type, const char* name, const std::vector<Reading>& readings);
    ~Device() override;

    /// Makes a device below this one.
    Device* add(const char* type, const char* name, const std::vector<Reading>& readings);

    /// The field of a reading, as the class of its data type; null when there is none.
    template <class FieldClass>
    FieldClass* reading(const char* name) const
    {
        return dynamic_cast<FieldClass*>(findField(name, EXACT_FSO));
    }

private:
    Orvane::NodeType _kind;
    std::vector<Orvane::NodePartDesc> _parts; ///< one for each field
};
