#pragma once

#include <QString>

// All fixed texts that the program shows or writes, as one table of data. A text stands exactly as it is used, its
// blanks at the ends included.

// The text with this number, 101 to 188; "" for a number without a text.
QString StringText(int number);

// Texts that have a name and no number.
enum class FixedText {
  SaveChangesToPage,
  ErrorLoadingImage,
  OneLevelOfUndo,
  ImageCropped,
  ReplaceExistingFile,
  NoIconSelected,
  // The path follows in a line of its own.
  FileNotFound,
  TestOfFileFailed,
  // The four lines after a build: this, the path, the next with the size between its halves, and the question.
  WebPackCreated,
  SizeOfFileIs,
  SizeUnit,
  TestThisPackage,
  PageFileNotFound,
  PageFileNotRead,
  PasswordRequired,
  // The project's name stands before it.
  AlreadySaved,
  // The project's name stands between the two.
  DeleteProjectBefore,
  DeleteProjectAfter,
  EnterUrl,
  CreateLinkTitle,
  DiscardTitle,
  SaveProjectTitle,
  PreparingEmail,
  SendingEmail,
  EmailSent,
};

QString StringText(FixedText text);
