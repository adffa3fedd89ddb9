#include "viewmanager.h"

#include <QPointer>
#include <QWidget>

namespace Core {

namespace {
QPointer<QWidget> &parentHolder()
{
    static QPointer<QWidget> parent;
    return parent;
}
} // namespace

QWidget *ViewManager::dialogParent()
{
    return parentHolder().data();
}

void ViewManager::setDialogParent(QWidget *parent)
{
    parentHolder() = parent;
}

} // namespace Core
