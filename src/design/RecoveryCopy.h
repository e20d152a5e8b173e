#pragma once
// Crash recovery for the design window. While a window has unsaved changes, a copy of its
// document (the .rdf bytes) is kept in the user's folder, <UserPath>/Recovery/<id>.rdf, with
// <id>.ini telling which report it belongs to and when it was written. It is rewritten every
// 30 s and shortly after each command once the user pauses, and removed when the changes are
// saved or the window closes cleanly. A window holds an advisory lock on <id>.lock for as
// long as it lives, so a copy whose lock is free belongs to a program that died: at the next
// start the user is asked, per copy, whether to recover it.
#include <QDateTime>
#include <QObject>
#include <QString>
#include <QTimer>
#include <vector>

class frmPagewright;

class RecoveryCopy : public QObject {
    Q_OBJECT
public:
    static constexpr int PeriodMs = 30000;
    static constexpr int IdleMs = 700;

    explicit RecoveryCopy(frmPagewright* window);
    ~RecoveryCopy() override; // leaves the files: only Remove() (a clean end) deletes them

    // Something may have changed: write once the user has been idle for IdleMs.
    void Touch();
    // Writes the copy now when the document has unsaved changes; removes it when it has none.
    void Update();
    // The changes were saved or deliberately dropped: no copy is needed any more.
    void Remove();
    QString CopyFile() const; // "" until the first copy is written

    // <UserPath>/Recovery of the current host; "" without one.
    static QString Folder();

    // A copy left by a program that no longer runs.
    struct Orphan {
        QString id;
        QString rdf;        // the document's bytes
        QString reportFile; // the report it belongs to; "" when it was never saved
        QString title;      // the name the window showed ("Untitled" when never saved)
        int kind = 1;       // report kind of the window
        QDateTime written;
    };
    // At start-up: offers each orphan with "Recover the unsaved changes to <title> from HH:MM?".
    // Yes opens it as unsaved changes of its report - into `window` when that is still empty and
    // of the same kind, else into a new design window; No deletes it. Returns the windows that
    // received a recovered document.
    static std::vector<frmPagewright*> OfferRecovery(frmPagewright* window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool lock();
    void writeNow();

    frmPagewright* m_win;
    QTimer m_periodic;
    QTimer m_idle;
    QString m_id;
    int m_lockFd = -1;
    bool m_written = false;
    bool m_changedSinceWrite = true;
};
