#pragma once
// What the field list needs of the design window: the shared "a field drag is under way" flag,
// and a way to add a field without the mouse. Kept here so this layer does not know the window.
#include <QString>

class FieldListOwner {
public:
    virtual ~FieldListOwner() = default;
    virtual bool IsDragField() const = 0;
    virtual void SetDragField(bool on) = 0;
    // Enter or a double-click on a field: the window places it where there is room.
    virtual void AddFieldFromList(const QString& name, int dicId) = 0;
};
