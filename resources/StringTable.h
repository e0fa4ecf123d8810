#pragma once

#include <QString>

// All fixed texts that the program shows or writes, as one table of data. A text stands exactly as it is used, its
// blanks at the ends included.

// The text with this number, 101 to 188; "" for a number without a text.
QString StringText(int number);

// Names of the numbers that code asks for. The answers to the quick tips have none: they go by a table of their own.
namespace TextNumber {
enum : int {
  BadPercentage = 101,
  NoPictureOpen = 102,
  BadQuality = 103,
  SavingFailed = 104,
  ReplaceFile = 105,
  BlankPage = 107,
  NoElementSelected = 108,
  NotMovable = 110,
  NoNeighbour = 111,
  NoTextForLink = 113,
  ChooseDefaultPackFolder = 114,
  NoSuchFolder = 115,
  NoCustomIcon = 116,
  FirstOfIconChecks = 117,  // the seven that CheckIconFile tells follow one another
  IconIsForCustom = 124,
  DiscardWork = 125,
  ChoosePackFolder = 126,
  BadPackFolder = 127,  // those of PackResult follow
  NextPageLink = 135,   // up to the name of the page
  NoFinishedEmail = 136,
  NoSavedProjects = 137,
  NoProjectSelected = 138,
  BadTableSize = 140,
  ThemeFileBefore = 141,  // the file's name stands between the two
  ThemeFileAfter = 142,
  HeartPicture = 143,
  NoIconMask = 144,
  HelpFileMissing = 145,
  HelpFileNotOpened = 146,
  NetworkNotReady = 147,
  NoSuchWinsock = 148,
  WinsockBlocked = 149,
  TooManyWinsockTasks = 150,
  BadWinsockParameter = 151,
  NotOnline = 152,
  OnlineByProxy = 153,
  NoServer = 154,
  NoSender = 156,
  BadSender = 157,
  NoRecipient = 158,
  BadRecipient = 159,
  NoEmailText = 160,
  NoSocket = 161,
  ServerNotFound = 162,
  NotConnected = 163,
  NoSocketNotices = 164,
  PlainEmailLine1 = 165,
  PlainEmailLine2 = 166,
  PlainEmailLine3 = 167,
  EmailFieldsMissing = 168,
  NameReserved = 184,
  ReplaceProject = 185,
  EnterProjectName = 186,
  SaveBeforeClosing = 187,
  NoCropArea = 188,
};
}  // namespace TextNumber

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
  // Where it can't be started but has been read.
  PackageIsWhole,
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
  // Why follows.
  NotEncrypted,
  EncryptionNotOffered,
  // The server's words follow.
  ServerSaid,
  // The time of day follows.
  ServerClosed,
  // Why a name can't be that of a folder; the character stands before the first one.
  NameHasCharacter,
  NameHasControl,
  NameIsDots,
  NameEndsBadly,
  NameIsDevice,
  NameTooLong,
};

QString StringText(FixedText text);
