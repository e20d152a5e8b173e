#pragma once
// A design page without a window, for batch commands: real item controls in a scene nobody
// looks at, so loading, dumping and saving behave exactly as in the designer.
#include "document/DesignSurface.h"

#include <QGraphicsObject>
#include <QGraphicsScene>
#include <memory>

class OffscreenPage : public DesignSurface, public SelectionManager {
public:
    OffscreenPage();
    ~OffscreenPage() override;

    QGraphicsScene& Scene() { return m_scene; }

    QObject* LoadItemControl(int objectType) override;
    void UnloadItemControl(QObject* control) override;
    void SendToBack(QObject* control) override;
    float DetailHeaderBarOffset() const override { return m_detailBar; }
    float PageFooterBarOffset() const override { return m_footerBar; }
    void HideHeaderFooter() override { m_detailBar = m_footerBar = 0; }
    void SetHeaderFooter(float detailBarTop) override { m_detailBar = detailBarTop; }
    void MovePageFooterBar(float footerTop) override { m_footerBar = footerTop; }
    void ClearDrawing() override {}
    int GridIncX() const override { return 60; }
    int GridIncY() const override { return 60; }
    void SetMousePointer(int) override {}
    void SetToolText(const QString&, const QString&) override {}
    void SetToolChecked(const QString&, bool) override {}
    void SetToolEnabled(const QString&, bool) override {}

    QList<QObject*> SelectedControls() const override { return m_selected; }
    void AddToSelection(QObject* c) override;
    void RemoveFromSelection(QObject* c) override { m_selected.removeAll(c); }
    void ClearSelection() override { m_selected.clear(); }
    void RefreshHandles() override {}

private:
    QGraphicsScene m_scene;
    QList<QObject*> m_selected;
    float m_detailBar = 0, m_footerBar = 0;
    double m_bottomZ = 0;
};

// A new item control of the kind's control array: text box, box, line or picture.
QGraphicsObject* NewItemControl(int objectType);
