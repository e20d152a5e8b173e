#include "entry/ReportKinds.h"

#include <QDir>
#include <QFileInfo>

QString ReportFolderTemplate(int reportKind)
{
    static const char* const parts[] = {"\\Reports\\Listings\\", "\\Reports\\Flyers\\", "\\Reports\\Taxrolls\\",
                                        "\\Reports\\Office\\",   "\\Reports\\Members\\", "\\Reports\\Rental\\"};
    const int i = (reportKind >= 1 && reportKind <= 6) ? reportKind - 1 : 0;
    return QStringLiteral("Users\\~UserName~") + QLatin1String(parts[i]);
}

int DictionaryKindOf(int reportKind)
{
    switch (reportKind) {
    case ReportKind::Taxrolls: return 2;
    case ReportKind::Office: return 3;
    case ReportKind::Members: return 4;
    case ReportKind::Rental: return 5;
    default: return 1;
    }
}

int ReportKindFromName(const QString& name)
{
    static const char* const names[] = {"listings", "flyers", "taxrolls", "office", "members", "rental"};
    for (int i = 0; i < 6; ++i)
        if (name.compare(QLatin1String(names[i]), Qt::CaseInsensitive) == 0)
            return i + 1;
    bool ok = false;
    const int n = name.toInt(&ok);
    return ok && n >= 1 && n <= 6 ? n : 0;
}

QString ReportKindName(int reportKind)
{
    static const char* const names[] = {"Listings", "Flyers", "Taxrolls", "Office", "Members", "Rental"};
    return reportKind >= 1 && reportKind <= 6 ? QLatin1String(names[reportKind - 1]) : QString();
}

QString ExpandUserName(const QString& folderTemplate, const QString& userName)
{
    QString s = folderTemplate;
    return s.replace(QLatin1String("~UserName~"), userName, Qt::CaseInsensitive);
}

QString LocalPath(const QString& hostPath)
{
    QString p = hostPath;
    p.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (p.isEmpty() || QFileInfo::exists(p))
        return p;
    // Walk the components, fixing the case of each one that exists under another spelling.
    const bool absolute = p.startsWith(QLatin1Char('/'));
    const bool trailing = p.endsWith(QLatin1Char('/'));
    const QStringList parts = p.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    QString cur = absolute ? QStringLiteral("/") : QString();
    bool resolving = true;
    for (const QString& part : parts) {
        QString next = cur.isEmpty() || cur.endsWith(QLatin1Char('/')) ? cur + part : cur + QLatin1Char('/') + part;
        if (resolving && !QFileInfo::exists(next) && part != QLatin1String(".") && part != QLatin1String("..")) {
            const QDir dir(cur.isEmpty() ? QStringLiteral(".") : cur);
            const QStringList entries = dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
            QString found;
            for (const QString& e : entries)
                if (e.compare(part, Qt::CaseInsensitive) == 0) { found = e; break; }
            if (found.isEmpty())
                resolving = false; // the rest does not exist yet: keep it as written
            else
                next = cur.isEmpty() || cur.endsWith(QLatin1Char('/')) ? cur + found : cur + QLatin1Char('/') + found;
        }
        cur = next;
    }
    if (trailing && !cur.endsWith(QLatin1Char('/')))
        cur += QLatin1Char('/');
    return cur;
}

QString DisplayPath(const QString& hostPath)
{
    return QDir::toNativeSeparators(LocalPath(hostPath));
}
