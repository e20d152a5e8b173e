#include "properties/NumberEdit.h"

#include <QRegularExpressionValidator>
#include <cmath>

NumberEdit::NumberEdit(double minimum, double maximum, int decimals, QWidget* parent)
    : QLineEdit(parent), m_min(minimum), m_max(maximum), m_decimals(decimals)
{
    // Only the characters of a number get in; the range is checked when the value is written,
    // so a half-typed "-" or "1." does not block the user.
    const QString sign = minimum < 0 ? QStringLiteral("-?") : QString();
    const QString pattern = decimals > 0 ? sign + QStringLiteral("\\d{0,10}(\\.\\d{0,%1})?").arg(decimals)
                                         : sign + QStringLiteral("\\d{0,10}");
    setValidator(new QRegularExpressionValidator(QRegularExpression(pattern), this));
}

void NumberEdit::SetValue(const QVariant& value)
{
    bool ok = false;
    const double v = value.toDouble(&ok);
    if (!value.isValid() || !ok) {
        clear();
        return;
    }
    if (m_decimals == 0)
        setText(QString::number(qint64(std::llround(v))));
    else
        setText(QString::number(v, 'f', m_decimals).remove(QRegularExpression(QStringLiteral("\\.?0+$"))));
}

bool NumberEdit::Value(double& out) const
{
    bool ok = false;
    const double v = text().toDouble(&ok);
    if (!ok || !std::isfinite(v) || v < m_min || v > m_max)
        return false;
    out = v;
    return true;
}

QString NumberEdit::RangeMessage() const
{
    const QString kind = m_decimals == 0 ? QStringLiteral("a whole number") : QStringLiteral("a number");
    return QStringLiteral("Enter %1 from %2 to %3.").arg(kind, QString::number(m_min, 'f', 0), QString::number(m_max, 'f', 0));
}
