#include "StringTable.h"

#include <QStringView>
#include <algorithm>
#include <iterator>

namespace {

struct NumberedText {
  int number;
  QStringView text;
};

// 112, 139 and 155 have no text, and nothing shows 109.
constexpr NumberedText kNumberedTexts[] = {
    {101, u"Must be a number greater than 10 and not 100."},
    {102, u"There must be a picture open and visible in the Picture Editor window."},
    {103, u"Must be a number between 5 and 100. Recommended range is 70 to 95."},
    {104, u"Error saving file."},
    {105, u"File exists. Replace it?"},
    {106, u"Selected Picture - Note: Image has been cropped to fit screen."},
    {107, u"<HTML><HEAD><TITLE></TITLE></HEAD><BODY BGCOLOR=\"#FFFFFF\" TEXT=\"#000000\"></BODY></HTML>"},
    {108, u"There is no page element currently selected."},
    {109,
     u"There is no cut element to paste. (Note: Only full elements can be pasted. To add a cut text "
     u"selection back in, edit the respective element.)"},
    {110, u"Selected item must be a text block or image. It cannot be a partial text selection"},
    {111, u"No suitable element found (text block or image) to switch with."},
    {113, u"In order to make a link you must first select the text that will show as a link."},
    {114, u"Select folder to make web-pack file."},
    {115, u"Error. Folder does not exist."},
    {116,
     u"No custom icon has been assigned or the assignment is invalid. To use this option click the Custom "
     u"button and assign an icon."},
    {117, u"File does not exist:"},
    {118, u"File is not an icon file:"},
    {119, u"File is not usable. It contains more than 1 icon."},
    {120, u"File is not usable. The dimensions are not 32 x 32."},
    {121, u"File is not usable. It is not 4 Bits per Pixel [16-color]."},
    {122, u"File is the wrong size. It should be 766 bytes."},
    {123, u"Error confirming icon suitability."},
    {124, u"This icon will be used when you select the Custom option for default web-pack file icon."},
    {125, u"This will discard current work if not already saved as a saved project. Proceed?"},
    {126, u"Select folder to make web-pack file."},
    {127, u"Folder path for web-pack file is not valid."},
    {128, u"Unknown error creating web-pack file."},
    {129,
     u"Error. Unable to make compressed file section of web-pack file. This may occur if the program is "
     u"not running from C drive."},
    {130,
     u"Error. Unable to make executable section of web-pack file. Try re-assigning web-pack file icon in "
     u"Settings."},
    {131,
     u"Error. Unable to assemble web-pack file in destination folder. This may occur if the program is not "
     u"running from C drive. In some cases this could also happen when using pictures from another drive. "
     u"Try removing such pictures from the project, then move them to C drive and re-insert them."},
    {132, u"Error. No page files found to make web-pack file."},
    {133, u"Error. Custom icon assignment for web-pack file is not valid."},
    {134,
     u"Error. Unable to make web-pack due to open file. This may happen if a sound file is playing while "
     u"web-pack file is being made."},
    {135, u"<DIV ALIGN=\"center\"><FONT FACE=\"arial,helvetica\" SIZE=3><A HREF=\""},
    {136, u"There is not currently a fully finished email to save."},
    {137, u"There are no saved projects."},
    {138, u"No project is selected."},
    {140, u"Table width and height must be entered as number of pixels."},
    {141, u"A file for this theme was not found. "},
    {142, u" should be in the program samples subfolder."},
    {143, u"<IMG SRC=\"hearttop.gif\" ID=\"heartpic\" WIDTH=400 HEIGHT=80 ALIGN=\"center\">"},
    {144,
     u"Error loading icon mask. Before proceeding, try saving this image to see whether the resulting icon "
     u"is distorted."},
    {145, u"The help file is missing. cvn2.hlp should be in the CVN program folder."},
    {146, u"Error opening the help file. Try to open cvn2.hlp directly from the program folder."},
    {147, u"System not ready for network communication."},
    {148, u"Winsock version 1.1 not supported."},
    {149, u"A blocking winsock is already in use."},
    {150, u"The limit on number of winsock tasks has been reached."},
    {151, u"Error with parameter of WSAStartup call."},
    {152, u"No Internet connection active. You must be online to send email."},
    {153, u"Internet connection is via proxy server. Unable to send email via proxy."},
    {154, u"Server address string missing."},
    {156, u"From email address missing."},
    {157, u"Invalid From email address."},
    {158, u"To email address missing."},
    {159, u"Invalid To email address."},
    {160, u"Text of email is missing."},
    {161, u"Winsock error - Failed to create socket. Error number:"},
    {162, u"Failed to resolve server IP address."},
    {163, u"Winsock error - Failed to connect to server. Error number:"},
    {164, u"Winsock err - Failure with WSAAsyncSelect. Error number:"},
    {165, u"This is a web greeting message made with Corvane."},
    {166, u"It may only be viewed as HTML email, but your email program"},
    {167, u"does not appear to read HTML format."},
    {168,
     u"The From email address, To email address and server address are all required to send an email. See "
     u"help for details."},
    {169, u"Corvane also provides several ways to use the webpages that you make. (See next topic.)"},
    {170, u"Corvane makes webpages. You don't need any experience. CVN makes it simple. "},
    {171,
     u"First, you can create one or more webpages and use CVN to create a \"web-pack\" from them. That is, "
     u"CVN will put them all into a single, compressed file, along with any pictures that you have used. A "
     u"web-pack file is like a self-contained, self-opening website. For example, you can send it in email "
     u"and the recipient can open it to see all of the webpages inside."},
    {172, u"Second, you can email a webpage as HTML email, directly from CVN."},
    {173,
     u"Third, you can use CVN as a webpage editor, saving your webpages as HTML files. When you save a "
     u"webpage file in CVN it will also save any pictures that go with the webpage, all in a single folder."},
    {174,
     u"Just click in the main window and start typing. Use the buttons in the work window to add pictures, "
     u"change the background color, etc. Double-click an item in the page to select it. Right-click "
     u"selected for more options."},
    {175,
     u"The Work Window is the small window at bottom center. It holds the tools for working on a webpage. "
     u"You can raise and lower the Work Window by clicking on its title bar."},
    {176, u"Themes are preset font/background combinations that can be used to start a webpage."},
    {177,
     u"Click the Page Properties button in the Work Window. In the Page Properties window you can set page "
     u"background color, background picture, default font properties, etc."},
    {178,
     u"The default text for the page can be set in the Page Properties window. Also, any section of text "
     u"can be changed by selecting it and then using the Font Controls at top right of the main window. "
     u"You can also edit text as you would in a normal text editor. Just click inside the text block."},
    {179,
     u"To add a picture, click the Picture button in the Work Window. You can then browse for a picture. "
     u"To remove a picture, double-click to select it, then right-click and click \"Cut\"."},
    {180,
     u"A table is a rectangular frame in a webpage. A table can have its own background color and it can "
     u"have a border if desired. A table can contain pictures and/or text. A table can also be made "
     u"invisible by using the background color of the page. In that case a table is used to help with page "
     u"layout."},
    {181,
     u"You can use the Return key and space bar to move things around. You can also select any page "
     u"element by double-clicking it and then use the moving buttons in the Work Window. There are also "
     u"alignment options for the page and for the inside of tables. You can do most things you might want "
     u"to do but you cannot completely control the layout of webpages. They just do not work that way. "
     u"HTML, the code language that makes webpages work, only provides for general layout. Also, the "
     u"layout will be affected by how the page is viewed. For example, you might put two pictures next to "
     u"each other on your webpage, but when viewed on a smaller monitor they might appear on top of one "
     u"another. You need to take that into consideration when working on a page."},
    {182,
     u"Click the envelope icon on the toolbar to email the current page. Fill in To, From, etc. in the "
     u"Email window and click Send. (Note: You must be online to email a page.)"},
    {183,
     u"Click the gift icon on the toolbar to make a package. Select the file name and where the package "
     u"file should be created. Then click OK."},
    {184, u"The name Project1 cannot be used. It is the default name for unsaved projects."},
    {185, u"A project is already saved with that name. Replace it?"},
    {186, u"Enter name for project."},
    {187, u"Do you want to save this project before closing?"},
    {188, u"A cropping area must first be defined by dragging the mouse."},
};

struct NamedText {
  FixedText name;
  QStringView text;
};

constexpr NamedText kNamedTexts[] = {
    {FixedText::SaveChangesToPage, u"Save changes to this page?"},
    {FixedText::ErrorLoadingImage, u"Error loading image file."},
    {FixedText::OneLevelOfUndo, u"Only one level of undo."},
    {FixedText::ImageCropped, u"Note: Image has been cropped to fit screen."},
    {FixedText::ReplaceExistingFile, u"Replace existing file?"},
    {FixedText::NoIconSelected, u"No icon selected."},
    {FixedText::FileNotFound, u"File not found.:"},
    {FixedText::TestOfFileFailed, u"Test of file failed. Try testing the file by hand."},
    {FixedText::WebPackCreated, u"Web-pack file created:"},
    {FixedText::SizeOfFileIs, u"Size of file is: "},
    {FixedText::SizeUnit, u" KB."},
    {FixedText::TestThisPackage, u"Do you want to test this package?"},
    {FixedText::PackageIsWhole,
     u"The package is whole: its pages and pictures can all be read. To see it as its recipient will, open it on "
     u"Windows."},
    {FixedText::PageFileNotFound, u"Error. Current page file not found."},
    {FixedText::PageFileNotRead, u"Error. Unable to read current page file."},
    {FixedText::PasswordRequired, u"Password required."},
    {FixedText::AlreadySaved, u" is already a saved project. The current page has been updated."},
    {FixedText::DeleteProjectBefore, u"Delete "},
    {FixedText::DeleteProjectAfter, u" project?"},
    {FixedText::EnterUrl, u"Enter URL for link."},
    {FixedText::CreateLinkTitle, u"Create Link"},
    {FixedText::DiscardTitle, u"Discard?"},
    {FixedText::SaveProjectTitle, u"Save Project"},
    {FixedText::PreparingEmail, u" Preparing to send email..."},
    {FixedText::SendingEmail, u" Sending email..."},
    {FixedText::EmailSent, u" Email sent."},
    {FixedText::NotEncrypted, u"The connection can't be encrypted, so nothing was sent: "},
    {FixedText::EncryptionNotOffered, u"The server offers no encryption (STARTTLS), so nothing was sent."},
    {FixedText::ServerSaid, u"The server said: "},
    {FixedText::ServerClosed, u"The server closed the connection at "},
    {FixedText::NameHasCharacter, u" can't be part of a name."},
    {FixedText::NameHasControl, u"A name can't hold a line end, tab or other control character."},
    {FixedText::NameIsDots, u"\".\" and \"..\" can't be names."},
    {FixedText::NameEndsBadly, u"A name can't end with a dot or a blank."},
    {FixedText::NameIsDevice, u"Windows keeps this name for a device."},
    {FixedText::NameTooLong, u"This name is too long."},
};

}  // namespace

QString StringText(int number) {
  const auto* found = std::find_if(std::begin(kNumberedTexts), std::end(kNumberedTexts),
                                   [number](const NumberedText& entry) { return entry.number == number; });
  return found == std::end(kNumberedTexts) ? QString() : found->text.toString();
}

QString StringText(FixedText text) {
  const auto* found = std::find_if(std::begin(kNamedTexts), std::end(kNamedTexts),
                                   [text](const NamedText& entry) { return entry.name == text; });
  return found == std::end(kNamedTexts) ? QString() : found->text.toString();
}
