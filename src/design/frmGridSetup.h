#pragma once
// The grid setup dialog: the snap grid's spacing across and down, in twips.
#include <QDialog>

class QSpinBox;

// What the dialog edits: the design window's grid spacing. Setting it also gives the
// selection manager its GridX/GridY; the setting is saved when the window closes.
class GridTarget {
public:
    virtual ~GridTarget() = default;
    virtual int GridIncX() const = 0;
    virtual int GridIncY() const = 0;
    virtual void SetGridSpacing(int x, int y) = 0;
};

class frmGridSetup : public QDialog {
    Q_OBJECT
public:
    static constexpr int MinSpacing = 1, MaxSpacing = 1000;

    // Fills the fields from the target, runs the dialog modally and sets the target's spacing
    // on OK. Returns whether OK was pressed.
    static bool Start(GridTarget& target, QWidget* parent);

    explicit frmGridSetup(GridTarget& target, QWidget* parent = nullptr);
    // Gives the target the spacing in the fields.
    void Apply();

private:
    GridTarget& m_target;
    QSpinBox* m_width = nullptr;
    QSpinBox* m_height = nullptr;
};
