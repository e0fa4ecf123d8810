// Moves icons between files or the clipboard and the surfaces of the icon editor. Whatever is opened or pasted is
// forced into 32 by 32 pixels and 16 colours. Nothing here shows a message.
#pragma once

#include <QString>

class IconSurfaces;
class Surface;

// Writes over what is there without shortening it, so that a longer file stays longer. A failure is silent.
void WriteIconFile(const IconSurfaces& surfaces, const QString& Path);

// Fills the surfaces, which have been cleared, from a picture or icon file. False when the mask of a file whose name
// ends in "ico" can't be read: the icon is wholly see-through then. A file that is no picture changes nothing.
bool OpenImage(IconSurfaces& surfaces, const QString& Path);

// Takes the clipboard's bitmap, and empties the clipboard by that; False, with nothing changed, when it holds none. All
// becomes opaque, whatever the bitmap's size. The state before is kept for undo.
bool PasteImage(IconSurfaces& surfaces);

// Fills Pic2 from the mask of an icon file; false, with nothing changed, when there is none.
bool LoadIconMask(IconSurfaces& surfaces, const QString& Path);

// Makes a mask pure black and white. Colours are compared as the numbers 0x00BBGGRR, so blue counts most.
void HardenMask(Surface& mask);

// Gives every pixel of a surface the nearest of the 16 colours, its background included.
void ReduceTo16(Surface& surface);
