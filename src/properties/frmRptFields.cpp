#include "properties/frmRptFields.h"

#include "entry/Host.h"
#include "properties/FieldListOwner.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDrag>
#include <QKeyEvent>
#include <QListWidget>
#include <QMimeData>
#include <QMouseEvent>
#include <QTabBar>
#include <QVBoxLayout>

namespace {
// The field group field of the listing dictionary: its codes are the tabs.
constexpr int GroupFieldDicId = 5;
constexpr int ListingDatabase = 1;
} // namespace

const QString frmRptFields::MimeType = QStringLiteral("application/x-pagewright-field");

frmRptFields::frmRptFields(QWidget* parent)
    : HostToolWindow(parent)
{
    setObjectName(QStringLiteral("frmRptFields"));
    setWindowTitle(QStringLiteral("Available Fields"));
    m_tabs = new QTabBar(this);
    m_tabs->setObjectName(QStringLiteral("TypeTabs"));
    m_tabs->setExpanding(false);
    m_tabs->setUsesScrollButtons(true);
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("lstFieldList"));
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    // Only the list's own drops (a drag given up over it); the item view's drag machinery stays off.
    m_list->setAcceptDrops(true);
    m_list->viewport()->setAcceptDrops(true);
    m_list->viewport()->installEventFilter(this);
    m_list->installEventFilter(this);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(0);
    layout->addWidget(m_tabs);
    layout->addWidget(m_list, 1);
    resize(220, 360);

    connect(m_tabs, &QTabBar::currentChanged, this, &frmRptFields::TabSelected);
    connect(m_list, &QListWidget::itemDoubleClicked, this, [this] { AddSelected(); });
}

frmRptFields::~frmRptFields() = default;

void frmRptFields::Init(FieldDictionary* dictionary, FieldListOwner* owner)
{
    m_dic = dictionary;
    m_owner = owner;
    AttachHostEvents();
    BuildTabs();
}

void frmRptFields::BuildTabs()
{
    const QSignalBlocker block(m_tabs);
    while (m_tabs->count() > 0)
        m_tabs->removeTab(0);
    if (m_dic && m_dic->DatabaseKind() == ListingDatabase) {
        try {
            m_dic->SelectField(GroupFieldDicId);
            std::unique_ptr<Recordset> rs = m_dic->FieldCodes(true, true);
            for (; rs && !rs->Eof(); rs->MoveNext()) {
                const int t = m_tabs->addTab(rs->Fields(1).toString());
                m_tabs->setTabData(t, rs->Fields(0).toString());
            }
        } catch (const HostError&) {
            // A catalogue without field groups still lists every field under "All".
            while (m_tabs->count() > 0)
                m_tabs->removeTab(0);
        }
    }
    const int all = m_tabs->addTab(QStringLiteral("All"));
    m_tabs->setTabData(all, QString());
    m_tabs->setCurrentIndex(0);
    TabSelected(0);
}

void frmRptFields::TabSelected(int index)
{
    m_list->clear();
    if (!m_dic || index < 0)
        return;
    try {
        m_dic->SetFieldGroup(m_tabs->tabData(index).toString());
        for (const FieldListEntry& f : m_dic->FillFieldList()) {
            auto* item = new QListWidgetItem(f.name, m_list);
            item->setData(Qt::UserRole, f.dicId);
        }
    } catch (const HostError&) {
        m_list->clear(); // an unreadable group lists nothing rather than half of it
    }
}

QString frmRptFields::FieldName() const
{
    const QListWidgetItem* item = m_list->currentItem();
    return item && item->isSelected() ? item->text() : QString();
}

int frmRptFields::DicId() const
{
    const QListWidgetItem* item = m_list->currentItem();
    return item && item->isSelected() ? item->data(Qt::UserRole).toInt() : 0;
}

// ---------------------------------------------------------------- drag and drop

QMimeData* frmRptFields::NewFieldMime(const QString& name, int dicId)
{
    auto* data = new QMimeData;
    data->setData(MimeType, (QString::number(dicId) + QLatin1Char('\t') + name).toUtf8());
    data->setText(name);
    return data;
}

bool frmRptFields::ReadFieldMime(const QMimeData* data, QString& name, int& dicId)
{
    if (!data || !data->hasFormat(MimeType))
        return false;
    const QString text = QString::fromUtf8(data->data(MimeType));
    const qsizetype tab = text.indexOf(QLatin1Char('\t'));
    if (tab <= 0)
        return false;
    bool ok = false;
    const int id = text.left(tab).toInt(&ok);
    const QString n = text.mid(tab + 1);
    // Dictionary numbers are 16-bit; anything else did not come from a field list.
    if (!ok || id < 0 || id > 32767 || n.isEmpty())
        return false;
    name = n;
    dicId = id;
    return true;
}

void frmRptFields::StartDrag()
{
    const QString name = FieldName();
    if (name.isEmpty() || !m_owner || m_owner->IsDragField())
        return;
    m_owner->SetDragField(true);
    auto* drag = new QDrag(m_list);
    drag->setMimeData(NewFieldMime(name, DicId()));
    if (m_runDrag) {
        m_runDrag(drag);
        drag->deleteLater();
    } else {
        drag->exec(Qt::CopyAction, Qt::CopyAction); // Qt disposes of the drag
    }
    // However the drag ended (dropped, given up with Escape, dropped nowhere) it is over now.
    m_owner->SetDragField(false);
    m_pressedOnEntry = false;
}

bool frmRptFields::ListViewportEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        auto* e = static_cast<QMouseEvent*>(event);
        m_pressPos = e->position().toPoint();
        m_pressedOnEntry = e->button() == Qt::LeftButton && m_list->itemAt(m_pressPos) != nullptr;
        return false;
    }
    case QEvent::MouseButtonRelease:
        m_pressedOnEntry = false;
        return false;
    case QEvent::MouseMove: {
        auto* e = static_cast<QMouseEvent*>(event);
        if (!(e->buttons() & Qt::LeftButton) || !m_pressedOnEntry || !m_owner || m_owner->IsDragField())
            return false;
        if ((e->position().toPoint() - m_pressPos).manhattanLength() < QApplication::startDragDistance())
            return false;
        StartDrag();
        return true;
    }
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto* e = static_cast<QDropEvent*>(event);
        if (e->mimeData() && e->mimeData()->hasFormat(MimeType))
            e->acceptProposedAction();
        else
            e->ignore();
        return true;
    }
    case QEvent::Drop: {
        // Dropped back where it came from: the drag ends and nothing is made.
        auto* e = static_cast<QDropEvent*>(event);
        if (!e->mimeData() || !e->mimeData()->hasFormat(MimeType)) {
            e->ignore();
            return true;
        }
        if (m_owner)
            m_owner->SetDragField(false);
        e->setDropAction(Qt::IgnoreAction);
        e->accept();
        return true;
    }
    default:
        return false;
    }
}

void frmRptFields::AddSelected()
{
    const QString name = FieldName();
    if (!name.isEmpty() && m_owner)
        m_owner->AddFieldFromList(name, DicId());
}

bool frmRptFields::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_list->viewport())
        return ListViewportEvent(event);
    if (watched == m_list && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            AddSelected();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

// ---------------------------------------------------------------- window life



