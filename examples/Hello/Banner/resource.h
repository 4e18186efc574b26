#define IDS_TITLE 101
