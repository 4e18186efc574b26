/* Prints the version block that the system finds in this very program, in UTF-8. */
#include <stdio.h>
#include <stdlib.h>
#include <windows.h>

static void PrintText(const void* block, const wchar_t* language, const wchar_t* key) {
  wchar_t path[128];
  wchar_t* text;
  UINT size;
  char utf8[512];
  swprintf(path, 128, L"\\StringFileInfo\\%ls\\%ls", language, key);
  if (!VerQueryValueW(block, path, (void**)&text, &size)) return;
  WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8, sizeof utf8, NULL, NULL);
  printf("%ls=%s\n", key, utf8);
}

int wmain(void) {
  static const wchar_t* const keys[] = {L"CompanyName", L"Comments", L"FileVersion", L"ProductVersion"};
  wchar_t self[MAX_PATH], language[16];
  DWORD handle, size;
  VS_FIXEDFILEINFO* fixed;
  WORD* translation;
  UINT length;
  void* block;
  GetModuleFileNameW(NULL, self, MAX_PATH);
  size = GetFileVersionInfoSizeW(self, &handle);
  block = malloc(size);
  if (size == 0 || !GetFileVersionInfoW(self, 0, size, block)) return 1;
  if (!VerQueryValueW(block, L"\\", (void**)&fixed, &length)) return 2;
  printf("file %u.%u.%u.%u\n", HIWORD(fixed->dwFileVersionMS), LOWORD(fixed->dwFileVersionMS),
         HIWORD(fixed->dwFileVersionLS), LOWORD(fixed->dwFileVersionLS));
  printf("product %u.%u.%u.%u\n", HIWORD(fixed->dwProductVersionMS), LOWORD(fixed->dwProductVersionMS),
         HIWORD(fixed->dwProductVersionLS), LOWORD(fixed->dwProductVersionLS));
  printf("flags %lx of %lx\n", fixed->dwFileFlags, fixed->dwFileFlagsMask);
  printf("system %lx\ntype %lx\n", fixed->dwFileOS, fixed->dwFileType);
  if (!VerQueryValueW(block, L"\\VarFileInfo\\Translation", (void**)&translation, &length)) return 3;
  printf("translation %04x %04x\n", translation[0], translation[1]);
  swprintf(language, 16, L"%04X%04X", translation[0], translation[1]);
  for (size_t i = 0; i < sizeof keys / sizeof *keys; ++i) PrintText(block, language, keys[i]);
  return 0;
}
