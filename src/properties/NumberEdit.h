#pragma once
// A numeric edit of the property sheet: whole numbers or decimals within a range. It may be
// empty (several selected items with different values), and an empty edit is never written.
#include <QLineEdit>
#include <QVariant>

class NumberEdit : public QLineEdit {
    Q_OBJECT
public:
    NumberEdit(double minimum, double maximum, int decimals, QWidget* parent = nullptr);

    double Minimum() const { return m_min; }
    double Maximum() const { return m_max; }
    int Decimals() const { return m_decimals; }

    // Shows a number (rounded to the edit's decimals); an invalid value empties the edit.
    void SetValue(const QVariant& value);
    // The number typed, when it is one and lies in the range.
    bool Value(double& out) const;
    // "Enter a whole number from 0 to 35000." and the like.
    QString RangeMessage() const;

    // A colour edit: the stored number is a BGR colour; it is shown as "#RRGGBB" beside a swatch
    // (a child named `swatchName`), and either form may be typed. Numbers outside the 24-bit
    // colours (the system colours) show as they are.
    void SetColourMode(const QString& swatchName);
    bool ColourMode() const { return m_swatch != nullptr; }
    QWidget* Swatch() const { return m_swatch; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void ShowSwatch(const QVariant& bgr);

    double m_min, m_max;
    int m_decimals;
    QWidget* m_swatch = nullptr;
};
