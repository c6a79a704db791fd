#pragma once

class QLabel;

/** Shows the banner on a label, as a link to the service. */
void show_banner(QLabel* label);
