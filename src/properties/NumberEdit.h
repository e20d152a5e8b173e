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

private:
    double m_min, m_max;
    int m_decimals;
};
