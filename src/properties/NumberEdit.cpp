#include "properties/NumberEdit.h"

#include <QFrame>
#include <QRegularExpressionValidator>
#include <cmath>

namespace {
constexpr qint64 MaxRgb = 0xFFFFFF;

// "#RRGGBB" of a BGR number (red in the low byte).
QString HexOfBgr(qint64 bgr)
{
    const int r = int(bgr & 0xFF), g = int((bgr >> 8) & 0xFF), b = int((bgr >> 16) & 0xFF);
    return QStringLiteral("#%1%2%3").arg(r, 2, 16, QLatin1Char('0')).arg(g, 2, 16, QLatin1Char('0')).arg(b, 2, 16, QLatin1Char('0')).toUpper();
}
} // namespace

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
    if (m_swatch)
        ShowSwatch(value.isValid() && ok ? value : QVariant());
    if (!value.isValid() || !ok) {
        clear();
        return;
    }
    if (m_swatch && v >= 0 && v <= MaxRgb) {
        setText(HexOfBgr(qint64(v)));
        return;
    }
    if (m_decimals == 0)
        setText(QString::number(qint64(std::llround(v))));
    else
        setText(QString::number(v, 'f', m_decimals).remove(QRegularExpression(QStringLiteral("\\.?0+$"))));
}

bool NumberEdit::Value(double& out) const
{
    if (m_swatch && text().startsWith(QLatin1Char('#'))) {
        // Exactly six hex digits, red first; stored the other way round.
        bool ok = false;
        const qint64 rgb = text().mid(1).toLongLong(&ok, 16);
        if (!ok || text().size() != 7)
            return false;
        out = double(((rgb & 0xFF) << 16) | (rgb & 0xFF00) | ((rgb >> 16) & 0xFF));
        return true;
    }
    bool ok = false;
    const double v = text().toDouble(&ok);
    if (!ok || !std::isfinite(v) || v < m_min || v > m_max)
        return false;
    out = v;
    return true;
}

QString NumberEdit::RangeMessage() const
{
    if (m_swatch)
        return QStringLiteral("Enter a colour as #RRGGBB, or a whole number from %1 to %2.")
            .arg(QString::number(m_min, 'f', 0), QString::number(m_max, 'f', 0));
    const QString kind = m_decimals == 0 ? QStringLiteral("a whole number") : QStringLiteral("a number");
    return QStringLiteral("Enter %1 from %2 to %3.").arg(kind, QString::number(m_min, 'f', 0), QString::number(m_max, 'f', 0));
}

void NumberEdit::SetColourMode(const QString& swatchName)
{
    if (!m_swatch) {
        auto* frame = new QFrame(this);
        frame->setFrameShape(QFrame::Box);
        frame->setAutoFillBackground(true);
        frame->setBackgroundRole(QPalette::Window); // not the edit's Base, which it would inherit
        frame->setAttribute(Qt::WA_TransparentForMouseEvents);
        m_swatch = frame;
    }
    m_swatch->setObjectName(swatchName);
    const QString sign = m_min < 0 ? QStringLiteral("-?") : QString();
    setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("#[0-9A-Fa-f]{0,6}|") + sign + QStringLiteral("\\d{0,10}")), this));
    setTextMargins(height(), 0, 0, 0);
    ShowSwatch(QVariant());
}

void NumberEdit::resizeEvent(QResizeEvent* event)
{
    QLineEdit::resizeEvent(event);
    if (m_swatch) {
        const int side = std::max(6, height() - 6);
        m_swatch->setGeometry(3, (height() - side) / 2, side, side);
        setTextMargins(side + 4, 0, 0, 0);
    }
}

void NumberEdit::ShowSwatch(const QVariant& bgr)
{
    bool ok = false;
    const double v = bgr.toDouble(&ok);
    // Only a real colour has a swatch; a system colour or several differing values have none.
    if (!bgr.isValid() || !ok || v < 0 || v > MaxRgb) {
        m_swatch->hide();
        return;
    }
    const qint64 n = qint64(v);
    QPalette pal = m_swatch->palette();
    pal.setColor(QPalette::Window, QColor(int(n & 0xFF), int((n >> 8) & 0xFF), int((n >> 16) & 0xFF)));
    m_swatch->setPalette(pal);
    m_swatch->show();
}
