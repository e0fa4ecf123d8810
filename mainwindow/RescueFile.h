// What a crash must not cost: the page in view, as it stands, in a file of its own beside the project, written again
// some seconds after each edit; and the pages that a run which didn't end well has left behind.
#pragma once

#include <QObject>
#include <QThreadPool>
#include <QTimer>
#include <atomic>

class WBUC;
struct PageToWrite;
struct Program;

// Before the workspace is wiped at a start: where there is more in it than one blank page, or a page in a rescue file,
// all of that is put into a folder of its own in `rescued`, named after the moment. The last ten of those are kept.
void KeepLeftOvers(Program& program);

class RescueFile : public QObject {
 public:
  // Both must outlive the object. `periodMs`: no two writes begin closer to each other.
  RescueFile(Program& program, WBUC& view, int periodMs = 5000);
  // The last write has ended then.
  ~RescueFile() override;

  // Writes at once what would be written soon.
  void Hurry();

  // The page couldn't be written into its own file. Hurries, and writes a page without an edit too if its own file went
  // in the attempt.
  void TakeUnwritten();

  // What is to become of the file where the page goes out of view. Drop removes it, since the page is in its own file
  // or isn't wanted; Leave lets it lie for the next start, since the page couldn't be written. What lies there is never
  // written over: a later page of its name gets another.
  void Drop();
  void Leave();

 private:
  void Schedule();
  void Write();

  // Reads the page on the other thread, so that a large one costs the window nothing, and again from the beginning if
  // it is changed meanwhile.
  void Attempt();
  void AttemptAgain();
  void WriteAtOnce();
  void Forget();
  bool IsDue() const;

  // Without its ending, and without the number of one that has to stand beside another.
  QString StemNow() const;
  QString FreePath() const;
  static void Put(const PageToWrite& page, const QString& path);  // on the other thread

  Program& program_;
  WBUC& view_;
  QTimer timer_;
  qint64 lastWrite_ = 0;
  int periodMs_;
  QString stem_;
  QString path_;      // of the last file, which begins with the stem; "" for none
  QStringList left_;  // the files that belong to pages out of view
  int attempt_ = 0;
  int attemptsLeft_ = 0;
  std::atomic<int> givenUp_ = -1;  // the last attempt that came to nothing
  QThreadPool disk_;               // one thread, so that all is done in its order
};
