#include "protocolgendlg.h"

#include "namerules.h"
#include "pinfigureview.h"
#include "serdes.h"
#include "../core/idecore.h"
#include "../dev/devicedb.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QSet>
#include <QStyle>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace IPSERDESIP {

namespace {

const char kWindowIcon[] = ":/image/module.png";
const char kTargetDeviceKey[] = "target_device";
const char kFileKey[] = "file";
const char kModuleKey[] = "module";
const char kFigureAreaName[] = "figureArea";

constexpr int kMinFigureAreaWidth = 220;
constexpr int kMaxFigureAreaWidth = 600;
constexpr int kMinFigureAreaHeight = 320;
constexpr qreal kFigureFontScale = 0.9;
// Room for the symbol beside a core's largest tab page.
constexpr int kInitialWidth = 1180;
constexpr int kInitialHeight = 780;

QString messageBoxName(QMessageBox::Icon icon)
{
    switch (icon) {
    case QMessageBox::Critical:
        return QStringLiteral("errorMessageBox");
    case QMessageBox::Question:
        return QStringLiteral("questionMessageBox");
    default:
        return QStringLiteral("helpMessageBox");
    }
}

// Runs a modal message box over parent and returns the button chosen.
int runMessageBox(QWidget *parent, QMessageBox::Icon icon, const QString &title,
                  const QString &text, QMessageBox::StandardButtons buttons,
                  QMessageBox::StandardButton defaultButton = QMessageBox::NoButton)
{
    QMessageBox box(icon, title, text, buttons, parent);
    box.setObjectName(messageBoxName(icon));
    box.setWindowIcon(QIcon(QString::fromLatin1(kWindowIcon)));
    if (defaultButton != QMessageBox::NoButton)
        box.setDefaultButton(defaultButton);
    return box.exec();
}

QLineEdit *makeLineEdit(const QString &objectName, QWidget *parent)
{
    auto *edit = new QLineEdit(parent);
    edit->setObjectName(objectName);
    return edit;
}

QComboBox *makeComboBox(const QString &objectName, const QStringList &items, QWidget *parent)
{
    auto *combo = new QComboBox(parent);
    combo->setObjectName(objectName);
    combo->addItems(items);
    return combo;
}

QPushButton *makeButton(const QString &text, const QString &objectName, QWidget *parent)
{
    auto *button = new QPushButton(text, parent);
    button->setObjectName(objectName);
    button->setAutoDefault(false);
    return button;
}

QLabel *makeCoreLabel(QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QStringLiteral("coreLabel"));
    label->setWordWrap(true);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    return label;
}

QLabel *makeCreatePathLabel(QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QStringLiteral("createPathLabel"));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // A long path must not widen the dialog; the tool tip shows it whole.
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    return label;
}

// Help on the left, OK and Cancel on the right.
QHBoxLayout *makeButtonRow(QPushButton *help, QPushButton *ok, QPushButton *cancel)
{
    auto *row = new QHBoxLayout;
    row->addWidget(help);
    row->addStretch(1);
    row->addWidget(ok);
    row->addWidget(cancel);
    return row;
}

// The symbol's port names are set a little smaller than the form's text.
PinFigureView *makeFigureView()
{
    auto *view = new PinFigureView;
    QFont font = view->font();
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * kFigureFontScale);
    view->setFont(font);
    return view;
}

QScrollArea *makeFigureArea(PinFigureView *figure, QWidget *parent)
{
    auto *area = new QScrollArea(parent);
    area->setObjectName(QString::fromLatin1(kFigureAreaName));
    area->setWidgetResizable(false);
    area->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    area->setBackgroundRole(QPalette::Base);
    area->setMinimumHeight(kMinFigureAreaHeight);
    area->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Expanding);
    area->setWidget(figure);
    return area;
}

// Sizes the figure area to the whole symbol's width: never wider than the
// symbol needs, and up to a limit past which the area scrolls sideways.
void fitFigureArea(QScrollArea *area, const PinFigureView *figure)
{
    if (!area)
        return;
    const int scrollBar = area->style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, area);
    const int wanted = std::max(kMinFigureAreaWidth, figure->sizeHint().width() + scrollBar
                                                         + 2 * area->frameWidth() + 2);
    area->setMinimumWidth(std::min(wanted, kMaxFigureAreaWidth));
    area->setMaximumWidth(wanted);
}

} // namespace

protocolGenDlg::protocolGenDlg(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("protocolGenDlg"));
    setWindowTitle(tr("Customize IP"));
    setWindowIcon(QIcon(QString::fromLatin1(kWindowIcon)));

    m_label = makeCoreLabel(this);
    m_fileName = makeLineEdit(QStringLiteral("fileNameEdit"), this);
    m_moduleName = makeLineEdit(QStringLiteral("moduleNameEdit"), this);
    m_language = makeComboBox(QStringLiteral("languageCombo"), languages(), this);
    m_synthesisTool = makeComboBox(QStringLiteral("synthesisToolCombo"), synthesisTools(), this);
    m_createPath = makeCreatePathLabel(this);

    auto *form = new QFormLayout;
    form->addRow(tr("File Name"), m_fileName);
    form->addRow(tr("Module Name"), m_moduleName);
    form->addRow(tr("Language"), m_language);
    form->addRow(tr("Synthesis Tool"), m_synthesisTool);
    form->addRow(tr("Create In"), m_createPath);

    m_figure = makeFigureView();
    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("tabWidget"));
    auto *middle = new QHBoxLayout;
    middle->addWidget(makeFigureArea(m_figure, this));
    middle->addWidget(m_tabs, 1);

    QPushButton *help = makeButton(tr("Help"), QStringLiteral("helpButton"), this);
    QPushButton *ok = makeButton(tr("OK"), QStringLiteral("okButton"), this);
    QPushButton *cancel = makeButton(tr("Cancel"), QStringLiteral("cancelButton"), this);
    ok->setDefault(true);

    auto *mainLayout = new QVBoxLayout(this);
    mainLayout->addWidget(m_label);
    mainLayout->addLayout(form);
    mainLayout->addLayout(middle, 1);
    mainLayout->addLayout(makeButtonRow(help, ok, cancel));

    // accept and reject are virtual: a core's overrides run.
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(help, &QPushButton::clicked, this, &protocolGenDlg::showHelp);
    connect(m_moduleName, &QLineEdit::textChanged, m_figure, &PinFigureView::setTitle);

    fitFigureArea(findChild<QScrollArea *>(QString::fromLatin1(kFigureAreaName)), m_figure);
    updateCreatePath();
    resize(kInitialWidth, kInitialHeight);
}

protocolGenDlg::~protocolGenDlg() = default;

void protocolGenDlg::initDialog()
{
}

bool protocolGenDlg::loadConfiguration(const QMap<QString, QVariant> &config)
{
    Q_UNUSED(config)
    return true;
}

void protocolGenDlg::setDevice(const QMap<QString, QVariant> &config)
{
    const QString id = config.value(QString::fromLatin1(kTargetDeviceKey)).toString();
    DEV::DeviceArg found;
    if (!id.isEmpty())
        found = Core::IdeCore::deviceDataBase()->findDevice(id);
    m_device = found.isNull() ? serdes::instance()->device() : found;
}

void protocolGenDlg::setCreating(const QString &name, const DEV::DeviceArg &device)
{
    m_instanceName = name;
    m_device = device;
    initDialog();
}

bool protocolGenDlg::setOpening(const QMap<QString, QVariant> &config)
{
    setDevice(config);
    const QVariant file = config.value(QString::fromLatin1(kFileKey));
    if (file.userType() == QMetaType::QString)
        m_fileName->setText(file.toString());
    const QVariant module = config.value(QString::fromLatin1(kModuleKey));
    if (module.userType() == QMetaType::QString)
        m_moduleName->setText(module.toString());
    // An opened core writes into the folder it already has.
    fileCheckSkipped = true;
    initDialog();
    return loadConfiguration(config);
}

void protocolGenDlg::uiSetLabelText(const QString &text)
{
    m_label->setText(text);
}

void protocolGenDlg::uiSetDefaultFileName(const QString &name)
{
    m_fileName->setText(name);
}

void protocolGenDlg::uiSetModuleName(const QString &name)
{
    m_moduleName->setText(name);
}

void protocolGenDlg::uiAddTab(QWidget *page, const QString &title)
{
    if (page)
        m_tabs->addTab(page, title);
}

// Selects the tool with exactly this name; an unknown name changes nothing.
void protocolGenDlg::uiSetSynthesisTool(const QString &tool)
{
    const int index = m_synthesisTool->findText(tool, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index >= 0)
        m_synthesisTool->setCurrentIndex(index);
}

// Selects a language by its index in languages(); an index out of range changes nothing.
void protocolGenDlg::uiSetLanguageIndex(int index)
{
    if (index >= 0 && index < m_language->count())
        m_language->setCurrentIndex(index);
}

QString protocolGenDlg::uiSynthesisTool() const
{
    return m_synthesisTool->currentText();
}

int protocolGenDlg::uiLanguageIndex() const
{
    return m_language->currentIndex();
}

QString protocolGenDlg::fileName() const
{
    return m_fileName->text();
}

QString protocolGenDlg::moduleName() const
{
    return m_moduleName->text();
}

QString protocolGenDlg::instanceName() const
{
    return m_instanceName;
}

QString protocolGenDlg::createPath() const
{
    return serdes::instance()->workingDir() + QLatin1Char('/') + fileName();
}

void protocolGenDlg::uiSetFigurePins(const QList<Utils::PinFigure> &pins)
{
    m_figure->setPins(pins);
    fitFigureArea(findChild<QScrollArea *>(QString::fromLatin1(kFigureAreaName)), m_figure);
}

QList<Utils::PinFigure> protocolGenDlg::figurePins() const
{
    return m_figure->pins();
}

void protocolGenDlg::fileNameConnectCreatIn()
{
    connect(m_fileName, &QLineEdit::textChanged, this, &protocolGenDlg::updateCreatePath,
            Qt::UniqueConnection);
    updateCreatePath();
}

DEV::DeviceArg protocolGenDlg::device() const
{
    return m_device;
}

void protocolGenDlg::checkFileOptions(QStringList &errors)
{
    errors.append(NameRules::fileNameProblems(fileName()));
}

bool protocolGenDlg::checkModuleName()
{
    const QString problem = NameRules::moduleNameProblem(moduleName());
    if (problem.isEmpty())
        return true;
    runMessageBox(this, QMessageBox::Critical, tr("Error"), problem, QMessageBox::Ok);
    return false;
}

bool protocolGenDlg::checkFileExisting()
{
    const QString path = createPath();
    if (!QFileInfo(path).isDir())
        return true;
    const QString text = tr("The folder \"%1\" already exists. Its files may be overwritten.\n"
                            "Do you want to use it anyway?").arg(QDir::toNativeSeparators(path));
    return runMessageBox(this, QMessageBox::Question, tr("Question"), text,
                         QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
           == QMessageBox::Yes;
}

void protocolGenDlg::showErrorMsg(const QStringList &errors)
{
    runMessageBox(this, QMessageBox::Critical, tr("Error"), errors.join(QLatin1Char('\n')),
                  QMessageBox::Ok);
}

QStringList protocolGenDlg::languages()
{
    return {QStringLiteral("Verilog"), QStringLiteral("VHDL")};
}

QStringList protocolGenDlg::synthesisTools()
{
    return {QStringLiteral("Built-in"), QStringLiteral("Third-party")};
}

// Names the core's help document; a document that is a file on disk is
// shown by its full path.
void protocolGenDlg::showHelp()
{
    const QString document = helpDocument.trimmed();
    QString text;
    if (document.isEmpty())
        text = tr("No help document is available for this core.");
    else if (QFileInfo(document).isFile())
        text = tr("The help document of this core is:\n%1")
                   .arg(QDir::toNativeSeparators(QFileInfo(document).absoluteFilePath()));
    else
        text = tr("Help document of this core: %1").arg(document);
    runMessageBox(this, QMessageBox::Information, tr("Help"), text, QMessageBox::Ok);
}

void protocolGenDlg::updateCreatePath()
{
    const QString path = createPath();
    m_createPath->setText(path);
    m_createPath->setToolTip(QDir::toNativeSeparators(path));
}

} // namespace IPSERDESIP
