#pragma once

#include "app/agent/PlanMatches.h"
#include "app/common/RunModel.h"
#include "core/assistant/records/AIProvider.h"
#include "core/rules/records/CleanupRule.h"

#include <QtQml/qqmlregistration.h>
#include <QStringList>
#include <QVariantList>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

struct PlannedAnswer;
struct RoomRequest;
struct TaskMonitor;

// The assistant: a request in plain words becomes a plan, and the plan a list of files with what would be done with
// each. Nothing is changed before the user confirms.
class AgentModel : public orvane::RunModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the program")
  Q_PROPERTY(QString prompt READ prompt WRITE setPrompt NOTIFY promptChanged)
  Q_PROPERTY(int provider READ provider WRITE setProvider NOTIFY providerChanged)
  Q_PROPERTY(QVariantList providers READ providers NOTIFY providerChanged)
  Q_PROPERTY(bool isOffline READ isOffline NOTIFY providerChanged)
  Q_PROPERTY(bool isPlanning READ isPlanning NOTIFY planChanged)
  Q_PROPERTY(bool hasPlan READ hasPlan NOTIFY planChanged)
  Q_PROPERTY(QString planTitle READ planTitle NOTIFY planChanged)
  Q_PROPERTY(QVariantList planSteps READ planSteps NOTIFY planChanged)
  Q_PROPERTY(QString answeredBy READ answeredBy NOTIFY planChanged)
  Q_PROPERTY(QString fallbackReason READ fallbackReason NOTIFY planChanged)
  Q_PROPERTY(bool isRefused READ isRefused NOTIFY planChanged)
  Q_PROPERTY(QString error READ error NOTIFY planChanged)
  Q_PROPERTY(QString fault READ fault NOTIFY planChanged)
  Q_PROPERTY(QStringList notices READ notices NOTIFY planChanged)
  Q_PROPERTY(QVariantList reading READ reading NOTIFY planChanged)
  Q_PROPERTY(QString changeText READ changeText NOTIFY planChanged)
  Q_PROPERTY(QString doubt READ doubt NOTIFY planChanged)
  Q_PROPERTY(QString roomText READ roomText NOTIFY planChanged)
  Q_PROPERTY(QString roomAction READ roomAction NOTIFY planChanged)
  Q_PROPERTY(QVariantList beside READ beside NOTIFY planChanged)
  Q_PROPERTY(QString ruleProblem READ ruleProblem NOTIFY planChanged)
  Q_PROPERTY(QStringList presets READ presets NOTIFY presetsChanged)
  Q_PROPERTY(double matchCount READ matchCount NOTIFY planChanged)
  Q_PROPERTY(double groupCount READ groupCount NOTIFY planChanged)
  Q_PROPERTY(double matchBytes READ matchBytes NOTIFY planChanged)
  Q_PROPERTY(double selectedCount READ selectedCount NOTIFY selectionChanged)
  Q_PROPERTY(double selectedBytes READ selectedBytes NOTIFY selectionChanged)
  Q_PROPERTY(int allCheckState READ allCheckState NOTIFY selectionChanged)
  Q_PROPERTY(QVariantList moves READ moves NOTIFY selectionChanged)
  Q_PROPERTY(QString selectedSums READ selectedSums NOTIFY selectionChanged)
  Q_PROPERTY(QString request READ request NOTIFY requestChanged)

 public:
  using enum PlanMatches::Role;
  // A header stands for the matches of one folder that go to one place.
  enum Kind { Header, Match };
  Q_ENUM(Kind)

  explicit AgentModel(WindowServices services, QObject* parent = nullptr);
  ~AgentModel() override;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override { return PlanMatches::roleNames(); }

  [[nodiscard]] QString prompt() const { return m_prompt; }
  void setPrompt(const QString& prompt);
  // As AIProvider counts.
  [[nodiscard]] int provider() const noexcept { return static_cast<int>(m_provider); }
  void setProvider(int provider);
  // {name, hasKey, needsKey}
  [[nodiscard]] QVariantList providers() const;
  // Whether the plan was made on this machine; before there is one, whether it would be.
  [[nodiscard]] bool isOffline() const;

  [[nodiscard]] bool isPlanning() const noexcept { return m_isPlanning; }
  // Also one that cannot be used: it is shown as it is.
  [[nodiscard]] bool hasPlan() const noexcept { return m_answer != nullptr; }
  [[nodiscard]] QString planTitle() const;
  // {text, detail}
  [[nodiscard]] QVariantList planSteps() const;
  // Who really made the plan.
  [[nodiscard]] QString answeredBy() const;
  // Why another one made it than was asked; empty where none did.
  [[nodiscard]] QString fallbackReason() const;
  // Whether the plan cannot be used, and so touches no file.
  [[nodiscard]] bool isRefused() const;
  // How to ask instead; empty for a plan that can be used.
  [[nodiscard]] QString error() const;
  // Why the plan cannot be used, in English; empty for one that can.
  [[nodiscard]] QString fault() const;
  // The folders that the plan names and in which nothing is touched.
  [[nodiscard]] QStringList notices() const;
  // The words of the request and what they became, and the conditions of the plan: {text, became, kind, condition}, as
  // ReadKind counts. What was assumed, changed or is missing has no text; the words that meant nothing are one. Of a
  // condition that can be changed also {name, title, value, isNumber, choices: {text, value, isCurrent}}; else
  // condition is -1.
  enum ReadKind { Read, Assumed, Unread, Changed, Missing };
  Q_ENUM(ReadKind)
  [[nodiscard]] QVariantList reading() const;
  // How the plan differs from the request, and what became of the selection; empty while it is as typed.
  [[nodiscard]] QString changeText() const;
  // Why the plan may not be the one that was meant; empty where it is.
  [[nodiscard]] QString doubt() const;
  // The section that does what was asked for, and the button that opens it; empty where there is none.
  [[nodiscard]] QString roomText() const;
  [[nodiscard]] QString roomAction() const;
  // Known places that the request could mean as well: {text, category}
  [[nodiscard]] QVariantList beside() const;
  // Why the plan cannot be a rule, once that was asked for; else empty.
  [[nodiscard]] QString ruleProblem() const { return m_ruleProblem; }
  // Requests that do something on this home.
  [[nodiscard]] QStringList presets() const;
  [[nodiscard]] double matchCount() const noexcept { return static_cast<double>(m_matches.proposal().size()); }
  [[nodiscard]] double groupCount() const noexcept { return static_cast<double>(m_matches.rows().groups().size()); }
  [[nodiscard]] double matchBytes() const { return static_cast<double>(m_matches.bytes()); }
  [[nodiscard]] double selectedCount() const noexcept { return static_cast<double>(m_matches.selection().count()); }
  [[nodiscard]] double selectedBytes() const noexcept { return static_cast<double>(m_matches.selection().bytes()); }
  // As Qt::CheckState counts; -1 where nothing can be chosen.
  [[nodiscard]] int allCheckState() const { return m_matches.allCheckState(); }
  // As those of PlanMatches.
  [[nodiscard]] QVariantList moves() const;
  [[nodiscard]] QString selectedSums() const { return m_matches.selectedSums(); }
  // The request that would be sent, to the letter but for the key; empty where nothing is sent.
  [[nodiscard]] QString request() const { return m_request; }

  Q_INVOKABLE void dryRun();
  // Turns over a match, or all of a header.
  Q_INVOKABLE void toggle(int row);
  Q_INVOKABLE void selectAll(bool isSelected);
  Q_INVOKABLE void toggleExpanded(int row);
  Q_INVOKABLE void confirm();
  [[nodiscard]] QString placeAt(int row) const override;
  Q_INVOKABLE void discard();
  // Gives a condition of reading() another value, as a person writes it, and looks again; empty takes it away. Returns
  // the key of the problem with a value that can never work.
  Q_INVOKABLE QString change(int condition, const QString& value);
  Q_INVOKABLE void askPreset(int index);
  // Files may have come or gone.
  Q_INVOKABLE void reloadPresets();
  // Adds a step over the known places of a category of beside().
  Q_INVOKABLE void addPlaces(int category);
  Q_INVOKABLE void openRoom();
  // Hands the plan on as a rule, or says in ruleProblem() why it can be none.
  Q_INVOKABLE void saveAsRule();
  Q_INVOKABLE void updateRequest();
  Q_INVOKABLE void cancel() override;

  void languageChanged() override;

  // Keys may be new.
  Q_INVOKABLE void reloadProviders();

 Q_SIGNALS:
  void promptChanged();
  void providerChanged();
  void planChanged();
  void selectionChanged();
  void requestChanged();
  void presetsChanged();
  void ruleMade(const orvane::CleanupRule& rule);
  // A request left this machine: its text, when, and whose it was.
  void requestSent(const QString& text, double date, const QString& provider);
  // A section is to be opened, its fields filled: a folder's path, a name to search for, and a way of organizing as the
  // section counts. What is not named is empty; the way is -1.
  void roomAsked(int section, const QString& folder, const QString& name, int way);
  void trashAsked();

 protected:
  [[nodiscard]] QString movedText(std::int64_t count, std::int64_t bytes) const override;

 private:
  struct Answer;

  struct Change;
  using Planner = std::function<PlannedAnswer(const std::stop_token& stop)>;
  // With a change of the plan that is shown, this one stays where there is no other.
  void plan(std::string prompt, Planner planner, std::shared_ptr<const Change> change = {});
  [[nodiscard]] std::shared_ptr<const Answer> answerOf(const std::string& prompt, const Planner& planner,
                                                       const Change* change, const TaskMonitor& monitor);
  void show(std::shared_ptr<const Answer> answer);
  [[nodiscard]] const RoomRequest* roomRequest() const;

  QString m_prompt;
  AIProvider m_provider = AIProvider::heuristic;
  std::array<bool, allAIProviders.size()> m_hasKey{};
  bool m_hasLocalModel = false;
  bool m_isPlanning = false;
  std::stop_source m_planStop;
  std::shared_ptr<const Answer> m_answer;
  PlanMatches m_matches;
  std::vector<std::string_view> m_presets;  // keys
  std::vector<FileUrl> m_folders;           // those that are granted
  QString m_request;
  QString m_ruleProblem;
  BackgroundQueue m_planQueue;
};

}  // namespace orvane
