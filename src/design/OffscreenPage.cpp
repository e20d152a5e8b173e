#include "design/OffscreenPage.h"

#include "design/Rectangle.h"
#include "design/RptImage.h"
#include "design/RptLine.h"
#include "design/RptTextBox.h"

QGraphicsObject* NewItemControl(int objectType)
{
    switch (objectType) {
    case 3: return new Rectangle;
    case 4: return new RptLine;
    case 5: return new RptImage;
    default: return new RptTextBox; // fields, labels and every text-like kind
    }
}

OffscreenPage::OffscreenPage() = default;

OffscreenPage::~OffscreenPage()
{
    m_selected.clear();
    m_scene.clear();
}

QObject* OffscreenPage::LoadItemControl(int objectType)
{
    QGraphicsObject* c = NewItemControl(objectType);
    m_scene.addItem(c);
    return c;
}

void OffscreenPage::UnloadItemControl(QObject* control)
{
    m_selected.removeAll(control);
    if (auto* item = qobject_cast<QGraphicsObject*>(control)) {
        m_scene.removeItem(item);
        delete item;
    }
}

void OffscreenPage::SendToBack(QObject* control)
{
    if (auto* item = qobject_cast<QGraphicsObject*>(control))
        item->setZValue(--m_bottomZ);
}

void OffscreenPage::AddToSelection(QObject* c)
{
    if (!m_selected.contains(c))
        m_selected << c;
}
