#include "document/RdfPaper.h"

#include <QRegularExpression>
#include <QSizeF>
#include <cmath>
#include <cstring>

namespace {

constexpr quint8 kMark0 = 'P', kMark1 = 'S', kVersion = 1;

qint32 readI32(const std::array<quint8, 16>& b, int at)
{
    return qint32(quint32(b[size_t(at)]) | quint32(b[size_t(at) + 1]) << 8 | quint32(b[size_t(at) + 2]) << 16 |
                  quint32(b[size_t(at) + 3]) << 24);
}

void writeI32(std::array<quint8, 16>& b, int at, qint32 v)
{
    for (int i = 0; i < 4; ++i)
        b[size_t(at + i)] = quint8(quint32(v) >> (8 * i));
}

const char* const kNames[] = {"Letter", "Legal", "Tabloid", "A4", "A5"};

} // namespace

QPageSize RdfPaper::PageSize() const
{
    switch (kind) {
    case Legal: return QPageSize(QPageSize::Legal);
    case Tabloid: return QPageSize(QPageSize::Tabloid);
    case A4: return QPageSize(QPageSize::A4);
    case A5: return QPageSize(QPageSize::A5);
    case Custom:
        // Points are twentieths of twips; QPageSize keeps points exactly.
        return QPageSize(QSizeF(widthTwips / 20.0, heightTwips / 20.0), QPageSize::Point, QStringLiteral("Custom"),
                         QPageSize::ExactMatch);
    default: return QPageSize(QPageSize::Letter);
    }
}

QStringList RdfPaper::Names()
{
    QStringList out;
    for (const char* n : kNames)
        out << QLatin1String(n);
    return out;
}

QString RdfPaper::Name() const
{
    return kind >= Letter && kind <= A5 ? QLatin1String(kNames[kind - 1]) : QStringLiteral("Custom");
}

std::optional<RdfPaper> RdfPaper::FromName(const QString& nameIn)
{
    const QString name = nameIn.trimmed();
    for (int k = Letter; k <= A5; ++k)
        if (name.compare(QLatin1String(kNames[k - 1]), Qt::CaseInsensitive) == 0)
            return RdfPaper{k, false, 0, 0};
    static const QRegularExpression size(QStringLiteral("^(\\d+(?:\\.\\d+)?)\\s*x\\s*(\\d+(?:\\.\\d+)?)\\s*(in|mm)$"),
                                         QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch m = size.match(name);
    if (!m.hasMatch())
        return std::nullopt;
    const double perUnit = m.captured(3).compare(QLatin1String("in"), Qt::CaseInsensitive) == 0 ? 1440.0 : 1440.0 / 25.4;
    const double w = m.captured(1).toDouble() * perUnit, h = m.captured(2).toDouble() * perUnit;
    if (w < MinTwips || h < MinTwips || w > MaxTwips || h > MaxTwips)
        return std::nullopt;
    return RdfPaper{Custom, false, int(std::lround(w)), int(std::lround(h))};
}

std::optional<RdfPaper> RdfReadPaper(const RdfHeader& header)
{
    const std::array<quint8, 16>& b = header.reserved20;
    if (b[0] != kMark0 || b[1] != kMark1 || b[2] != kVersion || b[4] > 1)
        return std::nullopt;
    RdfPaper p;
    p.kind = b[3];
    p.landscape = b[4] == 1;
    if (p.kind < RdfPaper::Letter || p.kind > RdfPaper::Custom)
        return std::nullopt;
    if (p.kind == RdfPaper::Custom) {
        p.widthTwips = readI32(b, 8);
        p.heightTwips = readI32(b, 12);
        if (p.widthTwips < RdfPaper::MinTwips || p.heightTwips < RdfPaper::MinTwips || p.widthTwips > RdfPaper::MaxTwips ||
            p.heightTwips > RdfPaper::MaxTwips)
            return std::nullopt;
    }
    return p;
}

void RdfWritePaper(RdfHeader& header, const std::optional<RdfPaper>& paper)
{
    std::array<quint8, 16>& b = header.reserved20;
    b.fill(0);
    if (!paper)
        return;
    b[0] = kMark0;
    b[1] = kMark1;
    b[2] = kVersion;
    b[3] = quint8(paper->kind);
    b[4] = paper->landscape ? 1 : 0;
    if (paper->kind == RdfPaper::Custom) {
        writeI32(b, 8, paper->widthTwips);
        writeI32(b, 12, paper->heightTwips);
    }
}
