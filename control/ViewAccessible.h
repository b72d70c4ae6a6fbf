#pragma once

#include <QAccessibleWidget>

namespace cinedisc {

class ezDICOMX;

/// What assistive programs hear of a view: of the main view whose picture it shows, of a preview also whether
/// the main view shows its file. The words of a notice stay the description.
class ViewAccessible final : public QAccessibleWidget {
  public:
    explicit ViewAccessible(ezDICOMX& view);
    /// From now on every view has one.
    static void install();

    QString text(QAccessible::Text what) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString& action) override;

  private:
    ezDICOMX& view() const;
    bool isChosen() const;
};

}  // namespace cinedisc
