#include "manual_document.h"

#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QImageReader>
#include <QPageLayout>
#include <QPainter>
#include <QTextCursor>
#include <QTextFrame>
#include <QTextList>
#include <QTextTable>
#include <QUrl>
#include <algorithm>

namespace {

constexpr int kDotsPerInch = 600;
constexpr double kMarginMm = 20.0;
constexpr double kTextPoints = 9.5;
constexpr double kFooterPoints = 8.0;
constexpr double kFooterSpace = 24.0;  // points below the text
// The program's pictures are taken at twice their usual size.
constexpr double kPointsPerPicturePixel = 0.36;
constexpr double kLinesBelowHeading = 4.0;
const QColor kHeadingInk(0x1F, 0x3A, 0x5F);
const QColor kTableHead(0xE4, 0xEA, 0xF2);
const QColor kTableLine(0xB4, 0xBE, 0xCA);
const QColor kCodeGround(0xF1, 0xF3, 0xF5);

}  // namespace

ManualDocument::ManualDocument(const QString& markdown, const QString& folder,
                               const QString& footer, QPdfWriter& writer)
    : writer_(writer), folder_(folder), footer_(footer) {
  writer_.setResolution(kDotsPerInch);
  writer_.setPageSize(QPageSize(QPageSize::A4));
  writer_.setPageMargins(QMarginsF(kMarginMm, kMarginMm, kMarginMm, kMarginMm),
                         QPageLayout::Millimeter);
  QFont font("DejaVu Sans");
  font.setStyleHint(QFont::SansSerif);
  font.setPointSizeF(kTextPoints);
  document_.setDefaultFont(font);
  document_.setBaseUrl(QUrl::fromLocalFile(folder + "/"));
  document_.documentLayout()->setPaintDevice(&writer_);
  document_.setMarkdown(markdown, QTextDocument::MarkdownDialectGitHub);
  document_.setDocumentMargin(0);
  const QRect page = writer_.pageLayout().paintRectPixels(kDotsPerInch);
  document_.setPageSize(QSizeF(page.width(), page.height() - Pixels(kFooterSpace)));
  Style();
  SizePictures();
  InsertContents();
  KeepHeadingsWithTexts();
  NumberContents();
}

double ManualDocument::Pixels(double points) const {
  return points * kDotsPerInch / 72.0;
}

void ManualDocument::Style() {
  for (QTextBlock block = document_.begin(); block.isValid(); block = block.next()) {
    StyleBlock(block);
    StyleFragments(block);
  }
  StyleTables();
}

void ManualDocument::StyleBlock(const QTextBlock& block) {
  QTextCursor cursor(block);
  QTextBlockFormat format;
  const int level = block.blockFormat().headingLevel();
  const bool inTable = cursor.currentTable() != nullptr;
  if (level > 0) {
    const double sizes[] = {22.0, 15.0, 11.5};
    format.setTopMargin(level == 1 ? 0.0 : level == 2 ? 22.0 : 14.0);
    format.setBottomMargin(level == 1 ? 10.0 : 6.0);
    QTextCharFormat letters;
    letters.setFontPointSize(sizes[std::min(level, 3) - 1]);
    letters.setFontWeight(QFont::Bold);
    letters.setForeground(kHeadingInk);
    // The importer's own relative size would count besides.
    letters.setProperty(QTextFormat::FontSizeAdjustment, 0);
    cursor.select(QTextCursor::BlockUnderCursor);
    cursor.mergeCharFormat(letters);
    headings_.push_back({block, block.text(), level});
  } else if (block.blockFormat().hasProperty(QTextFormat::BlockCodeFence) ||
             block.blockFormat().nonBreakableLines()) {
    format.setBackground(kCodeGround);
    format.setLeftMargin(10.0);
    format.setTopMargin(0.0);
    format.setBottomMargin(0.0);
  } else if (inTable) {
    format.setTopMargin(0.0);
    format.setBottomMargin(0.0);
  } else {
    format.setTopMargin(block.textList() ? 2.0 : 5.0);
    format.setBottomMargin(block.textList() ? 2.0 : 5.0);
    format.setLineHeight(115.0, QTextBlockFormat::ProportionalHeight);
  }
  QTextCursor(block).mergeBlockFormat(format);
}

// What a link leads to is beside the text on a screen only.
void ManualDocument::StyleFragments(const QTextBlock& block) {
  struct Change {
    int from, to;
    QTextCharFormat format;
  };
  std::vector<Change> changes;
  for (auto at = block.begin(); !at.atEnd(); ++at) {
    const QTextFragment fragment = at.fragment();
    QTextCharFormat format = fragment.charFormat();
    if (format.isAnchor()) {
      format.clearProperty(QTextFormat::IsAnchor);
      format.clearProperty(QTextFormat::AnchorHref);
      format.clearForeground();
      format.setFontUnderline(false);
    } else if (format.fontFixedPitch()) {
      format.setFontFamilies({"DejaVu Sans Mono", "monospace"});
      format.setFontPointSize(kTextPoints * 0.92);
    } else {
      continue;
    }
    changes.push_back({fragment.position(), fragment.position() + fragment.length(), format});
  }
  for (const Change& change : changes) {
    QTextCursor cursor(&document_);
    cursor.setPosition(change.from);
    cursor.setPosition(change.to, QTextCursor::KeepAnchor);
    cursor.setCharFormat(change.format);
  }
}

void ManualDocument::StyleTables() {
  for (QTextFrame* frame : document_.rootFrame()->childFrames()) {
    auto* table = qobject_cast<QTextTable*>(frame);
    if (table == nullptr) continue;
    QTextTableFormat format = table->format();
    format.setBorder(0.5);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setBorderBrush(kTableLine);
    format.setBorderCollapse(true);
    format.setCellPadding(4.0);
    format.setCellSpacing(0.0);
    format.setTopMargin(6.0);
    format.setBottomMargin(8.0);
    format.setHeaderRowCount(1);
    table->setFormat(format);
    for (int column = 0; column < table->columns(); ++column) {
      QTextTableCell cell = table->cellAt(0, column);
      QTextCharFormat head = cell.format();
      head.setBackground(kTableHead);
      cell.setFormat(head);
      QTextCursor cursor = cell.firstCursorPosition();
      cursor.setPosition(cell.lastCursorPosition().position(), QTextCursor::KeepAnchor);
      QTextCharFormat bold;
      bold.setFontWeight(QFont::Bold);
      cursor.mergeCharFormat(bold);
    }
  }
}

void ManualDocument::SizePictures() {
  const double widest = document_.pageSize().width() * 72.0 / kDotsPerInch;
  for (QTextBlock block = document_.begin(); block.isValid(); block = block.next()) {
    for (auto at = block.begin(); !at.atEnd(); ++at) {
      const QTextFragment fragment = at.fragment();
      if (!fragment.charFormat().isImageFormat()) continue;
      QTextImageFormat picture = fragment.charFormat().toImageFormat();
      const QSize size = QImageReader(QDir(folder_).filePath(picture.name())).size();
      if (!size.isValid()) {
        missing_ += picture.name();
        continue;
      }
      const double width = std::min(size.width() * kPointsPerPicturePixel, widest);
      // Lengths of a document are pixels of 96 to the inch.
      picture.setWidth(width * 96.0 / 72.0);
      picture.setHeight(width * 96.0 / 72.0 * size.height() / size.width());
      QTextCursor cursor(&document_);
      cursor.setPosition(fragment.position());
      cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
      cursor.setCharFormat(picture);
      break;
    }
  }
}

// Behind the title; the numbers come when everything stands where it stays.
void ManualDocument::InsertContents() {
  std::vector<Heading> listed;
  std::ranges::copy_if(headings_, std::back_inserter(listed),
                       [](const Heading& heading) { return heading.level > 1; });
  if (listed.empty() || headings_.front().level != 1) return;
  // Before the first chapter.
  QTextCursor cursor(listed.front().block.previous());
  cursor.movePosition(QTextCursor::EndOfBlock);
  QTextTableFormat format;
  format.setBorder(0);
  format.setCellPadding(1.5);
  format.setCellSpacing(0);
  format.setTopMargin(14.0);
  format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
  format.setColumnWidthConstraints({QTextLength(QTextLength::PercentageLength, 90),
                                    QTextLength(QTextLength::PercentageLength, 10)});
  contents_ = cursor.insertTable(static_cast<int>(listed.size()), 2, format);
  for (int row = 0; row < contents_->rows(); ++row) {
    const Heading& heading = listed[static_cast<size_t>(row)];
    QTextCharFormat letters;
    letters.setFontPointSize(kTextPoints);
    letters.setFontWeight(heading.level == 2 ? QFont::Bold : QFont::Normal);
    QTextBlockFormat indented;
    indented.setLeftMargin(heading.level == 2 ? 0.0 : 16.0);
    indented.setTopMargin(heading.level == 2 ? 4.0 : 0.0);
    QTextCursor title = contents_->cellAt(row, 0).firstCursorPosition();
    title.setBlockFormat(indented);
    title.insertText(heading.text, letters);
    indented.setLeftMargin(0.0);
    indented.setAlignment(Qt::AlignRight);
    QTextCursor number = contents_->cellAt(row, 1).firstCursorPosition();
    number.setBlockFormat(indented);
    number.insertText("00", letters);
  }
  QTextBlockFormat onNewPage;
  onNewPage.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
  QTextCursor(listed.front().block).mergeBlockFormat(onNewPage);
}

double ManualDocument::Top(const QTextBlock& block) const {
  return document_.documentLayout()->blockBoundingRect(block).top();
}

int ManualDocument::PageOf(const QTextBlock& block) const {
  return static_cast<int>(Top(block) / document_.pageSize().height()) + 1;
}

// From the first one on, as each break moves all that follows.
void ManualDocument::KeepHeadingsWithTexts() {
  for (const Heading& heading : headings_) {
    QTextBlock next = heading.block.next();
    while (next.isValid() && next.blockFormat().headingLevel() > 0) next = next.next();
    if (!next.isValid()) continue;
    const double height = document_.pageSize().height();
    const double end = Top(next) + Pixels(kTextPoints * 1.3 * kLinesBelowHeading);
    const QTextLayout* const text = next.layout();
    // A picture that does not fit goes to the next page as the first line of its block.
    const double first =
        text->lineCount() > 0 ? Top(next) + text->lineAt(0).rect().bottom() : Top(next);
    if (PageOf(heading.block) == static_cast<int>(std::max(end, first) / height) + 1) continue;
    QTextBlockFormat onNewPage;
    onNewPage.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    QTextCursor(heading.block).mergeBlockFormat(onNewPage);
  }
}

void ManualDocument::NumberContents() {
  if (contents_ == nullptr) return;
  int row = 0;
  for (const Heading& heading : headings_) {
    if (heading.level == 1) continue;
    const QTextTableCell cell = contents_->cellAt(row++, 1);
    QTextCursor number = cell.firstCursorPosition();
    number.setPosition(cell.lastCursorPosition().position(), QTextCursor::KeepAnchor);
    number.insertText(QString::number(PageOf(heading.block)), number.charFormat());
  }
}

void ManualDocument::Print() {
  QPainter painter(&writer_);
  const QSizeF page = document_.pageSize();
  const int pages = document_.pageCount();
  QAbstractTextDocumentLayout::PaintContext context;
  context.palette.setColor(QPalette::Text, Qt::black);
  QFont small = document_.defaultFont();
  small.setPointSizeF(kFooterPoints);
  for (int number = 1; number <= pages; ++number) {
    if (number > 1) writer_.newPage();
    painter.save();
    const QRectF shown(0, (number - 1) * page.height(), page.width(), page.height());
    painter.translate(0, -shown.top());
    painter.setClipRect(shown);
    context.clip = shown;
    document_.documentLayout()->draw(&painter, context);
    painter.restore();
    painter.setFont(small);
    painter.setPen(Qt::darkGray);
    const QRectF foot(0, page.height(), page.width(), Pixels(kFooterSpace));
    painter.drawText(foot, Qt::AlignLeft | Qt::AlignBottom, footer_);
    painter.drawText(foot, Qt::AlignRight | Qt::AlignBottom,
                     QString("%1 / %2").arg(number).arg(pages));
  }
}
