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
constexpr double kBetweenPages = 1.0;
constexpr double kFooterSpace = 24.0;  // points below the text
// The program's pictures are taken at twice their usual size.
constexpr double kPointsPerPicturePixel = 0.32;
constexpr double kLinesBelowHeading = 4.0;
const QColor kHeadingInk(0x1F, 0x3A, 0x5F);
const QColor kTableHead(0xE4, 0xEA, 0xF2);
const QColor kTableLine(0xB4, 0xBE, 0xCA);
const QColor kCodeGround(0xF1, 0xF3, 0xF5);

// The importer marks a word of code in one way, lines of code in another one.
bool IsCode(const QTextCharFormat& format) {
  return format.fontFixedPitch() || format.hasProperty(QTextFormat::FontFamilies);
}

bool IsCode(const QTextBlock& block) {
  for (auto at = block.begin(); !at.atEnd(); ++at) {
    if (!IsCode(at.fragment().charFormat())) return false;
  }
  return block.length() > 1;
}

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
  KeepTogether();
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
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    cursor.setCharFormat(letters);
    headings_.push_back({block, block.text(), level});
  } else if (IsCode(block) && !inTable) {
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
    } else if (IsCode(format)) {
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
    format.setHeaderRowCount(0);  // all but the longest stand on one page
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
      // A picture's line is as high as the picture.
      QTextBlockFormat plain = block.blockFormat();
      plain.setLineHeight(0.0, QTextBlockFormat::SingleHeight);
      cursor.setBlockFormat(plain);
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

int ManualDocument::PageAt(double y) const {
  return static_cast<int>(y / document_.pageSize().height()) + 1;
}

// From the first one on, as each break moves all that follows.
void ManualDocument::KeepTogether() {
  for (QTextBlock block = document_.begin(); block.isValid(); block = block.next()) {
    QTextTable* const table = TableBegunBy(block);
    if (block.blockFormat().headingLevel() == 0 && table == nullptr) continue;
    if (table == contents_ && table != nullptr) continue;
    QTextBlock text = block;
    while (text.isValid() && text.blockFormat().headingLevel() > 0) text = text.next();
    const double top = table != nullptr ? TableOf(*table).top() : Top(block);
    if (PageAt(top) == PageAt(EndOfBeginning(text))) continue;
    if (table != nullptr) {
      QTextTableFormat format = table->format();
      format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
      table->setFormat(format);
    } else {
      QTextBlockFormat format;
      format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
      QTextCursor(block).mergeBlockFormat(format);
    }
  }
}

// How far down that reaches which has to stand on one page: a whole table, a picture or some lines.
double ManualDocument::EndOfBeginning(const QTextBlock& block) const {
  if (!block.isValid()) return document_.size().height();
  if (QTextTable* const table = TableBegunBy(block)) return TableOf(*table).bottom() - 1.0;
  const QTextLayout* const text = block.layout();
  const double lines = Top(block) + Pixels(kTextPoints * 1.3 * kLinesBelowHeading);
  return text->lineCount() > 0 ? std::max(lines, Top(block) + text->lineAt(0).rect().bottom())
                               : lines;
}

QRectF ManualDocument::TableOf(QTextTable& table) const {
  return document_.documentLayout()->frameBoundingRect(&table);
}

QTextTable* ManualDocument::TableBegunBy(const QTextBlock& block) const {
  QTextTable* const table = QTextCursor(block).currentTable();
  return table != nullptr && table->firstPosition() == block.position() ? table : nullptr;
}

void ManualDocument::NumberContents() {
  if (contents_ == nullptr) return;
  int row = 0;
  for (const Heading& heading : headings_) {
    if (heading.level == 1) continue;
    const QTextTableCell cell = contents_->cellAt(row++, 1);
    QTextCursor number = cell.firstCursorPosition();
    number.setPosition(cell.lastCursorPosition().position(), QTextCursor::KeepAnchor);
    number.insertText(QString::number(PageAt(Top(heading.block))), number.charFormat());
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
    // What begins on the next page may reach into this one by a pixel.
    const QRectF shown(0, (number - 1) * page.height(), page.width(),
                       page.height() - Pixels(kBetweenPages));
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
