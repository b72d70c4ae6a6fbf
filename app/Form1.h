#pragma once

#include "app/Form1Behaviour.h"
#include "app/Form1Controls.h"
#include "app/Form1Layout.h"

#include <QMainWindow>

namespace cinedisc {

/// The main window. Its form-level values can be read as properties.
class Form1 : public QMainWindow {
    Q_OBJECT
    Q_PROPERTY(int PatientCounter READ PatientCounter)
    Q_PROPERTY(int ThumbFillCount READ ThumbFillCount)
    Q_PROPERTY(bool HasStudyFolders READ HasStudyFolders)
    Q_PROPERTY(bool StillsMode READ StillsMode)
    Q_PROPERTY(bool WheelPresent READ WheelPresent)
    Q_PROPERTY(QString CurrentFolder READ CurrentFolder)
    Q_PROPERTY(QString PatientsFolder READ PatientsFolder)

  public:
    /// Makes the window and runs its load handler; it is not shown yet.
    explicit Form1(const QString& programFolder);

    int PatientCounter() const { return behaviour_.catalogueLoader.PatientCounter().value(); }
    int ThumbFillCount() const { return behaviour_.strip.ThumbFillCount().value(); }
    bool HasStudyFolders() const { return behaviour_.place.position().HasStudyFolders; }
    bool StillsMode() const { return behaviour_.place.position().StillsMode; }
    bool WheelPresent() const { return controls_.wheel.WheelPresent(); }
    QString CurrentFolder() const { return behaviour_.place.position().CurrentFolder.pathOrEmpty(); }
    QString PatientsFolder() const { return behaviour_.place.position().PatientsFolder.pathOrEmpty(); }

    Form1Behaviour& behaviour() { return behaviour_; }
    RangeControl& sb1() { return controls_.sb1; }

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    Form1Layout layout_;
    Form1Controls controls_;
    Form1Behaviour behaviour_;
};

}  // namespace cinedisc
