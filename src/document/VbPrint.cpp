#include "document/VbPrint.h"
#include "entry/SafeFile.h"

#include "document/RdfFile.h"
#include "entry/Cp1252.h"

#include <QDir>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <algorithm>

namespace {
const QString kEol = QStringLiteral("\r\n");

void stripZeros(std::string& digits)
{
    if (digits.find('.') == std::string::npos)
        return;
    while (!digits.empty() && digits.back() == '0')
        digits.pop_back();
    if (!digits.empty() && digits.back() == '.')
        digits.pop_back();
}
}

QString VbPrintNumber(double v, bool isSingle)
{
    if (isSingle)
        v = double(float(v));
    if (std::isnan(v))
        return QStringLiteral(" NaN"); // never stored; shown rather than hidden
    if (std::isinf(v))
        return v < 0 ? QStringLiteral("-Inf") : QStringLiteral(" Inf");
    if (v == 0)
        return QStringLiteral(" 0"); // also -0
    const int precision = isSingle ? 7 : 15;
    const double a = std::fabs(v);

    // Round to the precision first; the exponent after rounding decides the form.
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*e", precision - 1, a);
    const char* e = std::strchr(buf, 'e');
    const int exponent = std::atoi(e + 1);

    std::string body;
    if (exponent < -4 || exponent >= precision) {
        std::string mantissa(static_cast<const char*>(buf), e);
        stripZeros(mantissa);
        char exp[16];
        std::snprintf(exp, sizeof exp, "E%c%02d", exponent < 0 ? '-' : '+', std::abs(exponent));
        body = mantissa + exp;
    } else {
        std::snprintf(buf, sizeof buf, "%.*f", std::max(0, precision - 1 - exponent), a);
        body = buf;
        stripZeros(body);
        if (body.size() > 1 && body[0] == '0' && body[1] == '.')
            body.erase(0, 1); // the classic form has no zero before the point
    }
    return QLatin1Char(v < 0 ? '-' : ' ') + QString::fromLatin1(body.c_str());
}

void VbPrintWriter::Line(const QString& text) { m_text += text + kEol; }

void VbPrintWriter::Text(const QString& label, const QString& value) { m_text += label + value + kEol; }

void VbPrintWriter::Number(const QString& label, double value, bool isSingle)
{
    // Print follows every number with a blank.
    m_text += label + VbPrintNumber(value, isSingle) + QLatin1Char(' ') + kEol;
}

void VbPrintWriter::Boolean(const QString& label, bool value)
{
    m_text += label + (value ? QStringLiteral("True") : QStringLiteral("False")) + kEol;
}

QByteArray VbPrintWriter::Bytes() const { return ToCp1252(m_text); }

bool VbPrintWriter::SaveFile(const QString& path) const
{
    if (IsEmpty())
        return false;
    try {
        SafeFileWriter::WriteFile(path, Bytes());
    } catch (const HostError& e) {
        throw RdfError(e.Number(), e.Description());
    }
    return true;
}
