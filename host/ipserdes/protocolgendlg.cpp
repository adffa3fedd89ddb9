#include "protocolgendlg.h"

#include "namerules.h"
#include "recordkeys.h"
#include "pinfigureview.h"
#include "serdes.h"
#include "../core/idecore.h"
#include "../dev/devicedb.h"

#include <QComboBox>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QSet>
#include <QScreen>
#include <QShowEvent>
#include <QSplitter>
#include <QStyle>
#include <QStyleOptionTabWidgetFrame>
#include <QTabBar>
#include <QTabWidget>
#include <QUrl>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>

#include <dlfcn.h>

namespace IPSERDESIP {

namespace {

// Runs a modal message box over parent and returns the button chosen. The
// box shows the parent's window icon.
int runMessageBox(QWidget *parent, QMessageBox::Icon icon, const QString &title,
                  const QString &text, QMessageBox::StandardButtons buttons,
                  QMessageBox::StandardButton defaultButton = QMessageBox::NoButton)
{
    QMessageBox box(icon, title, text, buttons, parent);
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

QLabel *makeCreatePathLabel(QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QStringLiteral("createPathLabel"));
    return label;
}

// OK, the default button, Cancel and Help.
QDialogButtonBox *makeButtons(QWidget *parent)
{
    auto *buttons = new QDialogButtonBox(
        QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help, parent);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("okButton"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cancelButton"));
    buttons->button(QDialogButtonBox::Help)->setObjectName(QStringLiteral("helpButton"));
    return buttons;
}

// The folder of the library that holds an address: a core's package
// folder, for an address inside the core's plug-in.
QString libraryFolder(const void *address)
{
    Dl_info info;
    if (!dladdr(address, &info) || !info.dli_fname)
        return QString();
    return QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath();
}

// Tabs that ask for the room their pages need to show all of their
// contents, every tab title included: a page's scroll area counts with its
// whole content rather than the capped size a scroll area asks for. They
// are never narrower than that; a page's own scroll area takes up a lack
// of height.
class TabArea : public QTabWidget
{
public:
    using QTabWidget::QTabWidget;

    QSize minimumSizeHint() const override
    {
        return QSize(sizeHint().width(), QTabWidget::minimumSizeHint().height());
    }

    QSize sizeHint() const override
    {
        QSize pages;
        for (int i = 0; i < count(); ++i)
            pages = pages.expandedTo(wholeSizeHint(widget(i)));
        const QSize bar = tabBar()->sizeHint();
        QStyleOptionTabWidgetFrame option;
        initStyleOption(&option);
        option.state = QStyle::State_None;
        const QSize contents(std::max(pages.width(), bar.width()), pages.height() + bar.height());
        return style()->sizeFromContents(QStyle::CT_TabWidget, &option, contents, this);
    }

private:
    static QSize wholeSizeHint(const QWidget *page)
    {
        QSize hint = page->sizeHint();
        for (const QScrollArea *area : page->findChildren<QScrollArea *>()) {
            if (const QWidget *content = area->widgetResizable() ? area->widget() : nullptr) {
                const int frame = area->frameWidth() + area->frameWidth();
                const QSize whole = content->sizeHint() + QSize(frame, frame);
                hint = hint.expandedTo(hint + whole - area->sizeHint());
            }
        }
        return hint;
    }
};

// Scrolls the port symbol, which it sizes to the symbol's size hint, and
// asks for the symbol's whole width beside a vertical scroll bar, which is
// also the narrowest it gets: the symbol's names are never cut. Its height
// follows the tabs.
class FigureArea : public QScrollArea
{
public:
    FigureArea(PinFigureView *figure, QWidget *parent) : QScrollArea(parent)
    {
        setObjectName(QStringLiteral("figureArea"));
        setWidgetResizable(true);
        setWidget(figure);
    }

    QSize sizeHint() const override
    {
        const int frame = frameWidth() + frameWidth();
        return QSize(widget()->sizeHint().width() + verticalScrollBar()->sizeHint().width() + frame,
                     QScrollArea::minimumSizeHint().height());
    }

    QSize minimumSizeHint() const override
    {
        return QSize(sizeHint().width(), QScrollArea::minimumSizeHint().height());
    }
};

// Holds everything above the buttons and scrolls it when the dialog is
// smaller than it: it asks for its content's whole size, not the capped
// size a scroll area asks for.
class FrameArea : public QScrollArea
{
public:
    FrameArea(QWidget *content, QWidget *parent) : QScrollArea(parent)
    {
        setObjectName(QStringLiteral("frameArea"));
        setFrameShape(QFrame::NoFrame);
        setWidgetResizable(true);
        setWidget(content);
    }

    QSize sizeHint() const override { return widget()->sizeHint(); }

protected:
    // The content asks for another size: so does the area.
    bool viewportEvent(QEvent *event) override
    {
        if (event->type() == QEvent::LayoutRequest)
            updateGeometry();
        return QScrollArea::viewportEvent(event);
    }
};

// Figure and tabs side by side; unlike QSplitter's own, its size hint
// leaves room for the handle between them.
class FigureSplitter : public QSplitter
{
public:
    using QSplitter::QSplitter;

    QSize sizeHint() const override
    {
        QSize hint = QSplitter::sizeHint();
        hint.rwidth() += handleWidth() * (count() - 1);
        return hint;
    }
};

// Folders in the working directory when a dialog opens: output folders
// that this dialog did not make.
QSet<QString> existingFolders()
{
    const QStringList names =
        QDir(serdes::instance()->workingDir()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return QSet<QString>(names.cbegin(), names.cend());
}

} // namespace

protocolGenDlg::protocolGenDlg(QWidget *parent) : QDialog(parent)
{
    m_fileName = makeLineEdit(QStringLiteral("fileNameEdit"), this);
    m_moduleName = makeLineEdit(QStringLiteral("moduleNameEdit"), this);
    m_language = makeComboBox(QStringLiteral("languageCombo"), languages(), this);
    m_synthesisTool = makeComboBox(QStringLiteral("synthesisToolCombo"), synthesisTools(), this);
    m_createPath = makeCreatePathLabel(this);

    // The output fields in two columns, which leaves the height to the tabs.
    auto *outputFields = new QFormLayout;
    outputFields->addRow(tr("File Name"), m_fileName);
    outputFields->addRow(tr("Language"), m_language);
    outputFields->addRow(tr("Create In"), m_createPath);
    auto *moduleFields = new QFormLayout;
    moduleFields->addRow(tr("Module Name"), m_moduleName);
    moduleFields->addRow(tr("Synthesis Tool"), m_synthesisTool);
    auto *fields = new QHBoxLayout;
    fields->addLayout(outputFields);
    fields->addLayout(moduleFields);

    auto *content = new QWidget;
    m_figure = new PinFigureView;
    m_tabs = new TabArea(content);
    m_tabs->setObjectName(QStringLiteral("tabWidget"));
    m_splitter = new FigureSplitter(content);
    m_splitter->setChildrenCollapsible(false);
    m_figureArea = new FigureArea(m_figure, m_splitter);
    m_splitter->addWidget(m_figureArea);
    m_splitter->addWidget(m_tabs);
    auto *contentLayout = new QVBoxLayout(content);
    contentLayout->setContentsMargins(QMargins());
    contentLayout->addLayout(fields);
    contentLayout->addWidget(m_splitter);

    // The buttons stay below the scrolled frame, always in sight.
    QDialogButtonBox *buttons = makeButtons(this);
    auto *mainLayout = new QVBoxLayout(this);
    m_frameArea = new FrameArea(content, this);
    mainLayout->addWidget(m_frameArea);
    mainLayout->addWidget(buttons);

    // accept and reject are virtual: a core's overrides run.
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::helpRequested, this, &protocolGenDlg::showHelp);
    connect(m_moduleName, &QLineEdit::textChanged, m_figure, &PinFigureView::setTitle);
    connect(m_moduleName, &QLineEdit::textChanged, this, &protocolGenDlg::fitFigure);

    m_existingFolders = existingFolders();
}

protocolGenDlg::~protocolGenDlg() = default;

void protocolGenDlg::initDialog() {}

QString protocolGenDlg::helpPath() const
{
    if (helpDocument.isEmpty() || QDir::isAbsolutePath(helpDocument))
        return helpDocument;
    // The core's class lives in its plug-in, which lives in its package folder.
    return libraryFolder(metaObject()) + QLatin1Char('/') + helpDocument;
}

void protocolGenDlg::showHelp()
{
    const QString path = helpPath();
    if (!QFileInfo(path).isFile()) {
        runMessageBox(this, QMessageBox::Critical, tr("Error"),
                      tr("The help document %1 was not found.").arg(path), QMessageBox::Ok);
        return;
    }
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        runMessageBox(this, QMessageBox::Critical, tr("Error"),
                      tr("No viewer opened the help document %1.").arg(path), QMessageBox::Ok);
}

bool protocolGenDlg::loadConfiguration(const QMap<QString, QVariant> &config)
{
    Q_UNUSED(config)
    return true;
}

void protocolGenDlg::setDevice(const QMap<QString, QVariant> &config)
{
    const QString id = config.value(RecordKey::TargetDevice).toString();
    DEV::DeviceArg found;
    if (!id.isEmpty())
        found = Core::IdeCore::deviceDataBase()->findDevice(id);
    m_device = found.isNull() ? serdes::instance()->device() : found;
}

void protocolGenDlg::setCreating(const QString &name, const DEV::DeviceArg &device)
{
    m_instanceName = name;
    m_device = device;
    if (!name.isEmpty())
        m_fileName->setText(name);
    initDialog();
}

bool protocolGenDlg::setOpening(const QMap<QString, QVariant> &config)
{
    setDevice(config);
    const QVariant file = config.value(RecordKey::File);
    if (file.userType() == QMetaType::QString)
        m_fileName->setText(file.toString());
    const QVariant module = config.value(RecordKey::Module);
    if (module.userType() == QMetaType::QString)
        m_moduleName->setText(module.toString());
    // An opened core writes into the folder it already has.
    fileCheckSkipped = true;
    initDialog();
    return loadConfiguration(config);
}

// The core's label is the dialog's title.
void protocolGenDlg::uiSetLabelText(const QString &text)
{
    setWindowTitle(text);
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
    m_synthesisTool->setCurrentText(tool);
}

// Selects a language by its index in languages(); an index out of range
// names no item and changes nothing.
void protocolGenDlg::uiSetLanguageIndex(int index)
{
    m_language->setCurrentText(m_language->itemText(index));
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
    fitFigure();
}

// A wider symbol (more ports, longer names, a longer title) widens its
// pane; a shown dialog grows by as much, as far as its screen has room,
// and scrolls what does not fit.
void protocolGenDlg::fitFigure()
{
    m_figureArea->updateGeometry();
    const int missing = m_figureArea->minimumSizeHint().width() - m_figureArea->width();
    if (isVisible() && missing > 0)
        resize(size().expandedTo((size() + QSize(missing, 0)).boundedTo(screenRoom())));
}

// The room of a shown dialog's screen, less the window frame around the
// dialog; a frame the window system has not reported counts as a title bar.
QSize protocolGenDlg::screenRoom() const
{
    QMargins frame = windowHandle()->frameMargins();
    if (frame.isNull())
        frame.setTop(style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, this));
    return screen()->availableGeometry().size()
           - QSize(frame.left() + frame.right(), frame.top() + frame.bottom());
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

// Only a folder that was there before this dialog opened is asked about,
// not the one its own calculation made.
bool protocolGenDlg::checkFileExisting()
{
    const QString path = createPath();
    if (!m_existingFolders.contains(fileName()) || !QFileInfo(path).isDir())
        return true;
    const QString text = tr("The folder \"%1\" already exists. Its files may be overwritten.\n"
                            "Do you want to use it anyway?")
                             .arg(QDir::toNativeSeparators(path));
    return runMessageBox(this, QMessageBox::Question, tr("Question"), text,
                         QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
           == QMessageBox::Yes;
}

// Opens at the size the contents ask for, as far as the screen has room,
// unless the host sized the dialog, and is placed afresh at that size.
void protocolGenDlg::showEvent(QShowEvent *event)
{
    if (!testAttribute(Qt::WA_Resized)) {
        // What the content asks for now: its scroll areas pass nothing on while hidden.
        m_splitter->updateGeometry();
        m_frameArea->updateGeometry();
        resize(sizeHint().boundedTo(screenRoom()));
        adjustPosition(parentWidget());
    }
    QDialog::showEvent(event);
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

void protocolGenDlg::updateCreatePath()
{
    m_createPath->setText(createPath());
}

} // namespace IPSERDESIP
