#include "modaldriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>

namespace CpriHost {

ModalDriver::ModalDriver(QObject *parent) : QObject(parent)
{
    m_timer.setInterval(0);
    connect(&m_timer, &QTimer::timeout, this, &ModalDriver::poll);
}

void ModalDriver::start()
{
    m_timer.start();
}

void ModalDriver::stop()
{
    m_timer.stop();
}

void ModalDriver::poll()
{
    QWidget *modal = QApplication::activeModalWidget();
    if (auto *box = qobject_cast<QMessageBox *>(modal)) {
        answer(box);
        return;
    }
    auto *dialog = qobject_cast<QDialog *>(modal);
    if (dialog && dialog != m_handled && m_handler) {
        m_handled = dialog;
        // Out of the timer's own call, so that message boxes the handler
        // opens are answered by the next rounds of this timer.
        QMetaObject::invokeMethod(
            this,
            [this, target = QPointer<QDialog>(dialog)] {
                if (target)
                    m_handler(target);
            },
            Qt::QueuedConnection);
    }
}

void ModalDriver::answer(QMessageBox *box)
{
    m_seen.append({box->windowTitle(), box->text()});
    QAbstractButton *button = box->button(m_answer);
    if (!button)
        button = box->escapeButton();
    if (!button && !box->buttons().isEmpty())
        button = box->buttons().first();
    if (button)
        button->click();
    else
        box->reject();
}

} // namespace CpriHost
