#pragma once

class QApplication;

/** Lets a font that is there stand in for the one that screens and prints name. */
void stand_in_for_missing_font();

/**
 * Everything that the program does once its application exists: looks, version gate, login, main window.
 * Returns the status of the process.
 */
int startup(QApplication& application);
