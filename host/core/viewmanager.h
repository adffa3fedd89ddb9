#pragma once

#include "../hostglobal.h"

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace Core {

class IPHOST_EXPORT ViewManager
{
public:
    // The widget that parents every dialog a core opens; null in a host
    // without a main window.
    static QWidget *dialogParent();
    static void setDialogParent(QWidget *parent);
};

} // namespace Core
