// The one way into help: the Help menu, F1 and every Help button end here.
#include "help/HelpBook.h"
#include "help/HelpViewer.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>

void ShowHelp(QWidget* from, int contextId)
{
    const HelpBook& book = HelpBook::Instance();
    QWidget* owner = from ? from->window() : nullptr;
    QString page = contextId ? book.PageForContext(contextId) : QString();
    if (page.isEmpty())
        page = owner ? book.PageForWindow(owner) : book.HomePage();
    HelpViewer* viewer = owner ? owner->findChild<HelpViewer*>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
    if (!viewer)
        viewer = new HelpViewer(book, owner);
    viewer->Open(page);
    viewer->show();
    viewer->raise();
    viewer->activateWindow();
}

namespace {

class HelpKey : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress || static_cast<QKeyEvent*>(event)->key() != Qt::Key_F1)
            return false;
        // The first widget that sees the press takes it, so it does not travel on to the parents.
        auto* w = qobject_cast<QWidget*>(watched);
        if (!w)
            return false;
        if (w->window()->inherits("HelpViewer"))
            return true;
        ShowHelp(w, 0);
        return true;
    }
};

} // namespace

void InstallHelpKey()
{
    static QPointer<HelpKey> key;
    if (!key && qApp) {
        key = new HelpKey(qApp);
        qApp->installEventFilter(key);
    }
}
