#include "desktop/help_viewer.h"

#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextTable>
#include <QToolBar>

#include "desktop/icons.h"
#include "desktop/window_fit.h"

namespace kavrel {

namespace {

constexpr std::size_t most_hits = 200;
constexpr int page_role = Qt::UserRole;
constexpr int line_role = Qt::UserRole + 1;
constexpr int list_width = 230;
constexpr int underscore_room = 3;  // pixels between lines of code, whose paper would cover underscores

void dress_page(QTextDocument& page, const QPalette& colours);
QAction* add_button(QToolBar& bar, const QString& text, const QString& tip);
void dress_table(QTextTable& table, const QColor& line, const QColor& paper);
void dress_block(const QTextBlock& block, const QColor& paper);

// A page is read and dressed apart and then shown as a whole: a document on the screen is laid out anew with each of
// its blocks.
class ManualBrowser final : public QTextBrowser {
public:
    QVariant loadResource(int type, const QUrl& name) override {
        const QVariant found = QTextBrowser::loadResource(type, name);
        if (type == QTextDocument::ImageResource) return fitted(found.toByteArray());
        if (!name.path().endsWith(".md")) return found;
        QTextDocument page;
        page.setDefaultFont(font());
        page.setMarkdown(QString::fromUtf8(found.toByteArray()));
        dress_page(page, palette());
        return page.toHtml();
    }

private:
    // A picture that is wider than the page is made to fit.
    [[nodiscard]] QImage fitted(const QByteArray& bytes) const {
        QImage picture = QImage::fromData(bytes);
        const double ratio = devicePixelRatioF();
        const int bar = verticalScrollBar()->sizeHint().width();  // which most pages have
        const int room = contentsRect().width() - bar - 2 * qRound(document()->documentMargin()) - 2;
        if (room <= 0 || picture.width() <= room) return picture;
        picture = picture.scaledToWidth(qRound(room * ratio), Qt::SmoothTransformation);
        picture.setDevicePixelRatio(ratio);
        return picture;
    }

protected:
    void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override {
        QTextBrowser::doSetSource(name, name.path().endsWith(".md") ? QTextDocument::HtmlResource : type);
    }
};

}  // namespace

HelpViewer::HelpViewer(const Manual& manual, WindowSettings& settings)
    : manual_(manual), settings_(settings), list_(new QListWidget), browser_(new ManualBrowser) {
    setObjectName("help_window");
    setWindowTitle(tr("Kavrel manual"));
    setWindowIcon(program_icon());
    auto* splitter = new QSplitter(this);
    splitter->addWidget(list_);
    splitter->addWidget(browser_);
    splitter->setSizes({list_width, 700});
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    setCentralWidget(splitter);
    list_->setWordWrap(true);
    list_->setFrameShape(QFrame::NoFrame);
    list_->setSpacing(2);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    browser_->setFrameShape(QFrame::NoFrame);
    browser_->setSearchPaths({manual.folder()});
    browser_->setOpenExternalLinks(true);
    browser_->document()->setDocumentMargin(16);
    connect(browser_, &QTextBrowser::sourceChanged, this, &HelpViewer::went_to_page);
    connect(list_, &QListWidget::itemClicked, this, &HelpViewer::open_item);
    connect(list_, &QListWidget::itemActivated, this, &HelpViewer::open_item);
    make_toolbar();
    list_pages();
    if (!settings_.restore("help", *this)) resize(QSize(980, 720).boundedTo(most_of_screen(*this)));
}

HelpViewer::~HelpViewer() { settings_.keep("help", *this); }

void HelpViewer::show_place(const ManualPlace& place) {
    const QUrl page(place.page + ".md");
    show();  // first, for the page is made to its width
    if (browser_->source() != page) browser_->setSource(page);
    raise();
    activateWindow();
    scroll_to_heading(place.heading);
}

QString HelpViewer::shown_page() const { return browser_->source().path().chopped(3); }

bool HelpViewer::event(QEvent* event) {
    if (event->type() == QEvent::PaletteChange && !browser_->source().isEmpty()) browser_->reload();
    return QMainWindow::event(event);
}

void HelpViewer::make_toolbar() {
    QToolBar* bar = addToolBar(tr("Manual"));
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    QAction* back = add_button(*bar, tr("◀ Back"), tr("The page before (Alt+Left)"));
    QAction* forward = add_button(*bar, tr("Forward ▶"), tr("Forward again (Alt+Right)"));
    QAction* home = add_button(*bar, tr("Contents"), tr("The first page of the manual"));
    back->setShortcut(QKeySequence::Back);
    forward->setShortcut(QKeySequence::Forward);
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(back, &QAction::triggered, browser_, &QTextBrowser::backward);
    connect(forward, &QAction::triggered, browser_, &QTextBrowser::forward);
    connect(home, &QAction::triggered, this, [this] {
        words_->clear();
        show_place({.page = "index", .heading = {}});
    });
    connect(browser_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(browser_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    auto* room = new QWidget(bar);
    room->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(room);
    words_ = new QLineEdit(bar);
    words_->setObjectName("help_words");
    words_->setPlaceholderText(tr("Search the manual (Ctrl+F)"));
    words_->setClearButtonEnabled(true);
    words_->setMaximumWidth(300);
    bar->addWidget(words_);
    connect(words_, &QLineEdit::textChanged, this, &HelpViewer::list_hits);
    connect(words_, &QLineEdit::returnPressed, this, &HelpViewer::open_next_hit);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, words_, [this] {
        words_->setFocus();
        words_->selectAll();
    });
    connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this, &QWidget::close);
}

void HelpViewer::list_pages() {
    list_->clear();
    for (const ManualPage& page : manual_.pages()) {
        auto* item = new QListWidgetItem(page.title, list_);
        item->setData(page_role, page.name);
        if (page.name == shown_page()) list_->setCurrentItem(item);
    }
}

void HelpViewer::list_hits(const QString& words) {
    if (words.simplified().isEmpty()) {
        list_pages();
        return;
    }
    list_->clear();
    QString title;
    for (const ManualHit& hit : manual_.find(words, most_hits)) {
        if (hit.title != title) {
            title = hit.title;
            auto* head = new QListWidgetItem(title, list_);
            QFont bold = head->font();
            bold.setBold(true);
            head->setFont(bold);
            head->setData(page_role, hit.page);
        }
        auto* item = new QListWidgetItem(hit.line.left(90), list_);
        item->setToolTip(hit.line);
        item->setData(page_role, hit.page);
        item->setData(line_role, words.simplified().section(' ', 0, 0) + '\n' + hit.line);
    }
    if (list_->count() > 0) return;
    auto* none = new QListWidgetItem(tr("Nothing found for \"%1\"").arg(words.simplified()), list_);
    none->setFlags(Qt::NoItemFlags);
}

void HelpViewer::open_item(const QListWidgetItem* item) {
    show_place({.page = item->data(page_role).toString(), .heading = {}});
    mark_words(item->data(line_role).toString());
}

// Enter in the search line goes from hit to hit, round at the end; the focus stays there.
void HelpViewer::open_next_hit() {
    for (int step = 1; step <= list_->count(); ++step) {
        const int row = (list_->currentRow() + step) % list_->count();
        if (!list_->item(row)->data(line_role).isValid()) continue;
        list_->setCurrentRow(row);
        open_item(list_->item(row));
        return;
    }
}

// The browser names the page that it leaves until this is over.
void HelpViewer::went_to_page(const QUrl& page) {
    if (!words_->text().simplified().isEmpty()) return;
    for (int i = 0; i < list_->count(); ++i) {
        if (list_->item(i)->data(page_role).toString() + ".md" == page.path()) list_->setCurrentRow(i);
    }
}

void HelpViewer::scroll_to_heading(const QString& heading) {
    if (heading.isEmpty()) return;
    const QTextDocument& page = *browser_->document();
    for (QTextBlock block = page.begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0 || block.text().compare(heading, Qt::CaseInsensitive) != 0)
            continue;
        QTextCursor end(browser_->document());
        end.movePosition(QTextCursor::End);
        browser_->setTextCursor(end);  // so that the heading comes to the top
        browser_->setTextCursor(QTextCursor(block));
        return;
    }
}

// The place of a hit: its first word, in the block whose text holds the line's beginning.
void HelpViewer::mark_words(const QString& line) {
    if (line.isEmpty()) return;
    const QString word = line.section('\n', 0, 0);
    const QStringList wanted = line.section('\n', 1).split(' ');
    QTextCursor best;
    qsizetype most = -1;
    for (QTextCursor at = browser_->document()->find(word, 0); !at.isNull();
         at = browser_->document()->find(word, at)) {
        const QString text = at.block().text();
        const auto held =
            std::count_if(wanted.begin(), wanted.end(), [&](const QString& one) { return text.contains(one); });
        if (held > most) {
            most = held;
            best = at;
        }
    }
    if (!best.isNull()) browser_->setTextCursor(best);
}

namespace {

// Tables get lines, code its paper; the palette of the window colours both.
void dress_page(QTextDocument& page, const QPalette& colours) {
    const QColor paper = colours.color(QPalette::AlternateBase);
    for (auto part = page.rootFrame()->begin(); !part.atEnd(); ++part) {
        if (auto* table = qobject_cast<QTextTable*>(part.currentFrame())) {
            dress_table(*table, colours.color(QPalette::Mid), paper);
        } else if (part.currentBlock().isValid()) {
            dress_block(part.currentBlock(), paper);
        }
    }
}

QAction* add_button(QToolBar& bar, const QString& text, const QString& tip) {
    QAction* action = bar.addAction(text);
    action->setToolTip(tip);
    return action;
}

void dress_table(QTextTable& table, const QColor& line, const QColor& paper) {
    QTextTableFormat frame = table.format();
    frame.setBorder(1);
    frame.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    frame.setBorderBrush(line);
    frame.setBorderCollapse(true);
    frame.setCellPadding(5);
    frame.setCellSpacing(0);
    frame.setTopMargin(6);
    frame.setBottomMargin(10);
    table.setFormat(frame);
    for (int column = 0; column < table.columns(); ++column) {
        QTextTableCell head = table.cellAt(0, column);
        QTextCharFormat format = head.format();
        format.setBackground(paper);
        head.setFormat(format);
    }
}

void dress_block(const QTextBlock& block, const QColor& paper) {
    QTextBlockFormat format = block.blockFormat();
    const bool is_code = format.hasProperty(QTextFormat::BlockCodeFence) ||
                         format.hasProperty(QTextFormat::BlockCodeLanguage) || format.nonBreakableLines();
    if (is_code) {
        format.setBackground(paper);
        format.setLeftMargin(12);
        const int height = QFontMetrics(block.document()->defaultFont()).lineSpacing() + underscore_room;
        format.setLineHeight(height, QTextBlockFormat::MinimumHeight);
    } else if (format.headingLevel() == 0 && block.textList() == nullptr &&
               !block.text().contains(QChar::ObjectReplacementCharacter)) {  // no share of a picture's height
        format.setLineHeight(112, QTextBlockFormat::ProportionalHeight);
    }
    QTextCursor(block).setBlockFormat(format);
}

}  // namespace

}  // namespace kavrel
