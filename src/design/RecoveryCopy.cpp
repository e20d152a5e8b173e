#include "design/RecoveryCopy.h"

#include "design/frmPagewright.h"
#include "document/clsRptControl.h"
#include "entry/Host.h"
#include "entry/PrivateProfile.h"
#include "entry/Prompts.h"
#include "entry/ReportKinds.h"
#include "entry/SafeFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

const QString kSection = QStringLiteral("Recovery");

// Paths may hold any character; the info file is read as Windows-1252, so keep it ASCII.
QString encoded(const QString& s) { return QString::fromLatin1(QUrl::toPercentEncoding(s, " \\/:~()[],'")); }
QString decoded(const QString& s) { return QUrl::fromPercentEncoding(s.toLatin1()); }

QString newId()
{
    static std::atomic<int> counter{0};
    return QStringLiteral("%1-%2-%3")
        .arg(::getpid())
        .arg(QDateTime::currentMSecsSinceEpoch(), 0, 16)
        .arg(++counter);
}

// An exclusive lock on <folder>/<id>.lock: the descriptor, or -1 when another process has it.
int tryLock(const QString& lockFile, bool wait)
{
    const int fd = ::open(QFile::encodeName(lockFile).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0)
        return -1;
    if (::flock(fd, LOCK_EX | (wait ? 0 : LOCK_NB)) != 0) {
        ::close(fd);
        return -1;
    }
    return fd;
}

void removeFiles(const QString& folder, const QString& id)
{
    for (const char* ext : {".rdf", ".ini", ".lock"})
        QFile::remove(folder + QLatin1Char('/') + id + QLatin1String(ext));
}

} // namespace

RecoveryCopy::RecoveryCopy(frmPagewright* window) : QObject(window), m_win(window)
{
    m_periodic.setInterval(PeriodMs);
    connect(&m_periodic, &QTimer::timeout, this, &RecoveryCopy::writeNow);
    m_periodic.start();
    m_idle.setSingleShot(true);
    m_idle.setInterval(IdleMs);
    connect(&m_idle, &QTimer::timeout, this, &RecoveryCopy::writeNow);
    // Every command ends with a mouse button or key coming up, wherever it was given (menu,
    // tool bar, page, property sheet): that is the boundary after which a copy is due.
    if (QCoreApplication::instance())
        QCoreApplication::instance()->installEventFilter(this);
}

RecoveryCopy::~RecoveryCopy()
{
    if (m_lockFd >= 0)
        ::close(m_lockFd);
}

bool RecoveryCopy::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonRelease:
    case QEvent::KeyRelease:
    case QEvent::Drop:
        Touch();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

QString RecoveryCopy::Folder()
{
    if (!gHost || gHost->UserPath().isEmpty())
        return {};
    QString user = gHost->UserPath();
    while (user.endsWith(QLatin1Char('\\')) || user.endsWith(QLatin1Char('/')))
        user.chop(1);
    return LocalPath(user + QStringLiteral("\\Recovery"));
}

QString RecoveryCopy::CopyFile() const
{
    return m_written ? Folder() + QLatin1Char('/') + m_id + QStringLiteral(".rdf") : QString();
}

void RecoveryCopy::Touch()
{
    m_changedSinceWrite = true;
    m_idle.start();
}

void RecoveryCopy::Update()
{
    m_changedSinceWrite = true;
    writeNow();
}

bool RecoveryCopy::lock()
{
    if (m_lockFd >= 0)
        return true;
    const QString folder = Folder();
    if (folder.isEmpty() || !QDir().mkpath(folder))
        return false;
    if (m_id.isEmpty())
        m_id = newId();
    m_lockFd = tryLock(folder + QLatin1Char('/') + m_id + QStringLiteral(".lock"), false);
    return m_lockFd >= 0;
}

void RecoveryCopy::writeNow()
{
    clsRptControl& doc = m_win->Document();
    if (!doc.DirtyFlag || doc.RptItemCount() == 0) {
        Remove();
        return;
    }
    if (m_written && !m_changedSinceWrite)
        return;
    if (!lock())
        return; // nowhere to write: try again at the next boundary
    const QString base = Folder() + QLatin1Char('/') + m_id;
    // Both files are replaced in one step each, so a crash mid-write leaves the last good copy.
    if (!doc.WriteRecoveryCopy(base + QStringLiteral(".rdf")))
        return;
    const QString title = m_win->ReportFileTitle().isEmpty() ? QStringLiteral("Untitled") : m_win->ReportFileTitle();
    const QByteArray info = QStringLiteral("[Recovery]\r\nReportFile=%1\r\nTitle=%2\r\nKind=%3\r\nWritten=%4\r\n")
                                .arg(encoded(m_win->ReportFile()), encoded(title))
                                .arg(m_win->MenuSwitch())
                                .arg(QDateTime::currentDateTime().toString(Qt::ISODate))
                                .toLatin1();
    try {
        SafeFileWriter::WriteFile(base + QStringLiteral(".ini"), info);
    } catch (const HostError&) {
        return;
    }
    m_written = true;
    m_changedSinceWrite = false;
}

void RecoveryCopy::Remove()
{
    m_idle.stop();
    if (!m_id.isEmpty() && m_lockFd >= 0) {
        removeFiles(Folder(), m_id);
        ::close(m_lockFd);
        m_lockFd = -1;
    }
    m_written = false;
}

std::vector<frmPagewright*> RecoveryCopy::OfferRecovery(frmPagewright* window)
{
    std::vector<frmPagewright*> opened;
    const QString folder = Folder();
    if (folder.isEmpty() || !QFileInfo(folder).isDir())
        return opened;
    QStringList ids;
    for (const QFileInfo& f : QDir(folder).entryInfoList({QStringLiteral("*.rdf"), QStringLiteral("*.ini")}, QDir::Files, QDir::Time | QDir::Reversed))
        if (!ids.contains(f.completeBaseName()))
            ids << f.completeBaseName();
    bool windowUsed = false;
    for (const QString& id : ids) {
        const QString base = folder + QLatin1Char('/') + id;
        const int fd = tryLock(base + QStringLiteral(".lock"), false);
        if (fd < 0)
            continue; // its window is still open, in this program or another
        struct Unlock {
            int fd;
            ~Unlock() { ::close(fd); }
        } unlock{fd};

        const QString ini = base + QStringLiteral(".ini");
        Orphan o;
        o.id = id;
        o.rdf = base + QStringLiteral(".rdf");
        o.reportFile = decoded(PrivateProfile::GetString(kSection, QStringLiteral("ReportFile"), QString(), ini));
        o.title = decoded(PrivateProfile::GetString(kSection, QStringLiteral("Title"), QStringLiteral("Untitled"), ini));
        o.kind = PrivateProfile::GetString(kSection, QStringLiteral("Kind"), QStringLiteral("1"), ini).toInt();
        o.written = QDateTime::fromString(PrivateProfile::GetString(kSection, QStringLiteral("Written"), QString(), ini), Qt::ISODate);
        if (!IsRegularFile(o.rdf) || !IsRegularFile(ini)) {
            removeFiles(folder, id); // a copy cut short before its first complete write
            continue;
        }
        if (o.kind < 1 || o.kind > 6)
            o.kind = ReportKind::Listings;
        if (!o.written.isValid())
            o.written = QFileInfo(o.rdf).lastModified();

        const int answer = MsgBox(QStringLiteral("Recover the unsaved changes to %1 from %2?").arg(o.title, o.written.toString(QStringLiteral("HH:mm"))),
                                  Mb::YesNo | Mb::Question, QStringLiteral("Report/Flyer Designer"));
        if (answer == Mb::Yes) {
            frmPagewright* target = nullptr;
            if (window && !windowUsed && window->MenuSwitch() == o.kind && window->Document().RptItemCount() == 0
                && window->ReportFile().isEmpty()) {
                target = window;
                windowUsed = true;
            } else if (auto* w = dynamic_cast<frmPagewright*>(NewDesignWindow())) {
                w->setAttribute(Qt::WA_DeleteOnClose);
                w->Init(-1, o.kind, true);
                w->show();
                target = w;
            }
            // A copy that cannot be read any more is reported by the window and dropped: it
            // would only be offered again and again.
            if (!target)
                continue; // no window to show it in: keep it for the next start
            if (target->AdoptRecoveredReport(o.rdf, o.reportFile, o.title))
                opened.push_back(target);
        }
        removeFiles(folder, id);
    }
    return opened;
}
