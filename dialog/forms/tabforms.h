#pragma once

// The four tab forms of the configuration dialog, built from their
// Qt Designer descriptions.

#include "ui_afe_config.h"
#include "ui_core_config.h"
#include "ui_opt_config.h"
#include "ui_phy_config.h"

namespace IPCPRI {

class core_config : public Ui::core_config
{};
class phy_config : public Ui::phy_config
{};
class afe_config : public Ui::afe_config
{};
class opt_config : public Ui::opt_config
{};

} // namespace IPCPRI
