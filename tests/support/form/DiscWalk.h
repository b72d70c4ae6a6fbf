#pragma once

#include "app/Form1Behaviour.h"
#include "tests/support/DiscBuilder.h"

#include <QHash>
#include <QSet>

#include <functional>
#include <random>

namespace cinedisc::test {

/// A disc as discs really are: patients whose folders are missing, empty or oddly named, studies and series
/// without content, unreadable files, stills among cine, a catalogue with gaps.
class OddDisc {
  public:
    OddDisc(unsigned seed, const DiscBuilder::FileMaker& makeFile);

    const DiscBuilder& disc() const { return *disc_; }
    /// The catalogue's name for a patient's folder, "" for a folder that it does not list.
    QString nameOf(const QString& patientFolder) const;
    /// The name to be shown for a series' folder: the catalogue's, or the design text.
    QString seriesNameOf(const QString& seriesFolder) const;
    /// Folders that somebody may choose by hand.
    QStringList folders() const;
    int below(int n) { return int(random_() % unsigned(n)); }

  private:
    void spoil(const QString& patientFolder, int number);

    std::mt19937 random_;
    QList<PatientPlan> patients_;
    std::unique_ptr<DiscBuilder> disc_;
};

/// Walks over a disc by commands of the menus and buttons, keys, wheel, tree and previews, and checks after
/// each what must hold whatever was done: every file, preview and label belongs to the patient whose name is
/// shown, or the view says otherwise; nothing ends the program.
class DiscWalk {
  public:
    struct Hands {
        std::function<void(int node)> clickNode;
        /// Whether the main view warns that its picture is not the named patient's.
        std::function<bool()> warns;
        /// Chooses a folder by File > Open; empty where a dialog cannot be answered.
        std::function<void(const QString& folder)> openFolder;
    };
    DiscWalk(OddDisc& disc, Form1Behaviour& window, Hands hands);

    void step();
    int picturesShown() const { return int(shown_.size()); }

  private:
    using Step = std::pair<QString, std::function<void()>>;
    void addCommands();
    void checkOwner() const;
    void checkLabels() const;
    void checkControls() const;

    OddDisc& disc_;
    Form1Behaviour& window_;
    FormControls& form_;
    DiscControls& controls_;
    Hands hands_;
    QList<Step> steps_;
    QStringList trail_;
    QSet<QString> shown_;
};

}  // namespace cinedisc::test
