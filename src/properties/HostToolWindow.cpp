#include "properties/HostToolWindow.h"

#include "entry/Host.h"

#include <QCloseEvent>

HostToolWindow::HostToolWindow(QWidget* parent) : QWidget(parent, Qt::Tool) {}

void HostToolWindow::AttachHostEvents()
{
    if (!gHost)
        return;
    AppEvents* events = &gHost->AppEvents();
    disconnect(events, nullptr, this, nullptr);
    connect(events, &AppEvents::MinimizedChanged, this, &HostToolWindow::MinimizedChanged);
    connect(events, &AppEvents::UnloadForm, this, &HostToolWindow::Unload);
}

void HostToolWindow::closeEvent(QCloseEvent* event)
{
    if (m_unloading) {
        event->accept();
        return;
    }
    event->ignore();
    hide();
}

void HostToolWindow::Unload()
{
    if (m_unloading)
        return;
    m_unloading = true;
    if (gHost)
        disconnect(&gHost->AppEvents(), nullptr, this, nullptr);
    OnUnload();
    close();
}

void HostToolWindow::MinimizedChanged(bool minimized)
{
    if (m_unloading)
        return;
    if (minimized) {
        // A second "minimised" must not overwrite what the window looked like before the first.
        if (!m_minimized)
            m_visibleBeforeMinimize = isVisible();
        m_minimized = true;
        hide();
    } else {
        if (m_minimized)
            setVisible(m_visibleBeforeMinimize);
        m_minimized = false;
    }
}
