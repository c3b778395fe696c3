// A Markdown text laid out on pages, with a table of contents behind its title and page numbers.
#pragma once

#include <QPdfWriter>
#include <QString>
#include <QStringList>
#include <QTextBlock>
#include <QTextDocument>
#include <vector>

class QTextTable;

class ManualDocument {
 public:
  // Pictures are looked for from `folder` on. `footer` stands at the foot of every page. The writer
  // has to outlive the document.
  ManualDocument(const QString& markdown, const QString& folder, const QString& footer,
                 QPdfWriter& writer);

  // As the text names them.
  const QStringList& MissingPictures() const { return missing_; }

  void Print();

 private:
  struct Heading {
    QTextBlock block;
    QString text;
    int level;
  };

  void Style();
  void StyleBlock(const QTextBlock& block);
  void StyleFragments(const QTextBlock& block);
  void StyleTables();
  void SizePictures();
  void InsertContents();
  void KeepTogether();
  void NumberContents();
  double EndOfBeginning(const QTextBlock& block) const;
  QTextTable* TableBegunBy(const QTextBlock& block) const;  // null: none
  QRectF TableOf(QTextTable& table) const;
  int PageAt(double y) const;
  double Top(const QTextBlock& block) const;
  double Pixels(double points) const;

  QPdfWriter& writer_;
  const QString folder_;
  const QString footer_;
  QTextDocument document_;
  std::vector<Heading> headings_;
  QTextTable* contents_ = nullptr;
  QStringList missing_;
};
