; The installer for Windows. For the user who starts it, unless /ALLUSERS is said, which an administrator may; /S asks
; nothing, /D=FOLDER (last, without quotes) names the folder.
; The uninstaller removes what the installer put down and nothing else; with the settings of the user when that section is
; chosen, or /SETTINGS said.
;
; scripts/package defines VERSION, STAGE (the folder whose content is installed), LISTS (the folder with remove.nsh, made
; from that content), OUTPUT and ICON.
Unicode true
Target amd64-unicode
!include "MUI2.nsh"
!include "FileFunc.nsh"
!include "LogicLib.nsh"

!define PROGRAMS "Software\Microsoft\Windows\CurrentVersion\Uninstall"
!define UNINSTALL "${PROGRAMS}\qxhost"

Name "qxhost"
OutFile "${OUTPUT}"
SetCompressor /SOLID lzma
RequestExecutionLevel user
BrandingText "qxhost ${VERSION}"
ShowInstDetails nevershow
ShowUninstDetails nevershow
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "qxhost"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Installs qxhost"
VIAddVersionKey LegalCopyright "MIT License"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_COMPONENTSPAGE_NODESC
!insertmacro MUI_PAGE_LICENSE "${STAGE}/LICENSE.txt"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Var allUsers

; Shell folders and SHCTX are those of all users or of this one from here on.
!macro TakeContext
  SetRegView 64
  ${If} $allUsers == 1
    SetShellVarContext all
  ${Else}
    SetShellVarContext current
  ${EndIf}
!macroend

Function .onInit
  StrCpy $allUsers 0
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/ALLUSERS" $1
  ${IfNot} ${Errors}
    UserInfo::GetAccountType
    Pop $1
    ${If} $1 != "Admin"
      MessageBox MB_ICONSTOP|MB_OK "/ALLUSERS needs an administrator." /SD IDOK
      SetErrorLevel 740  ; the system's number for: elevation required
      Quit
    ${EndIf}
    StrCpy $allUsers 1
  ${EndIf}
  !insertmacro TakeContext
  ${If} $INSTDIR != ""  ; said with /D
  ${ElseIf} $allUsers == 1
    StrCpy $INSTDIR "$PROGRAMFILES64\qxhost"
  ${Else}
    StrCpy $INSTDIR "$LOCALAPPDATA\Programs\qxhost"
  ${EndIf}
FunctionEnd

Section
  !insertmacro TakeContext
  ; An earlier version goes first, wherever it stands, or files that this one lacks would stay.
  ReadRegStr $0 SHCTX "${UNINSTALL}" "InstallLocation"
  ${If} $0 != ""
  ${AndIf} ${FileExists} "$0\uninstall.exe"
    ; Its uninstaller runs as a copy: a program that ended may hold its own file for a moment.
    InitPluginsDir
    CopyFiles /SILENT "$0\uninstall.exe" "$PLUGINSDIR\earlier.exe"
    ExecWait '"$PLUGINSDIR\earlier.exe" /S _?=$0'
  ${EndIf}

  SetOutPath "$INSTDIR"
  File /r "${STAGE}/*"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  SetOutPath "$INSTDIR\bin"  ; where shortcuts start
  CreateDirectory "$SMPROGRAMS\qxhost"
  !ifdef DESKTOP
    CreateShortcut "$SMPROGRAMS\qxhost\qxhost.lnk" "$INSTDIR\bin\qxhost-desktop.exe"
  !endif
  CreateShortcut "$SMPROGRAMS\qxhost\qxhost command line.lnk" "$SYSDIR\cmd.exe" '/k "set PATH=$INSTDIR\bin;%PATH%"'
  CreateShortcut "$SMPROGRAMS\qxhost\Uninstall qxhost.lnk" "$INSTDIR\uninstall.exe"

  WriteRegStr SHCTX "${UNINSTALL}" "DisplayName" "qxhost"
  WriteRegStr SHCTX "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL}" "Publisher" "The authors of qxhost"
  WriteRegStr SHCTX "${UNINSTALL}" "DisplayIcon" "$INSTDIR\uninstall.exe"
  WriteRegStr SHCTX "${UNINSTALL}" "InstallLocation" "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr SHCTX "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD SHCTX "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD SHCTX "${UNINSTALL}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD SHCTX "${UNINSTALL}" "EstimatedSize" $0
SectionEnd

Section "un.qxhost"
  SectionIn RO
  !insertmacro TakeContext
  !include "${LISTS}/remove.nsh"
  Delete "$INSTDIR\uninstall.exe"
  SetOutPath "$TEMP"  ; a folder that is in use stays
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\qxhost\qxhost.lnk"
  Delete "$SMPROGRAMS\qxhost\qxhost command line.lnk"
  Delete "$SMPROGRAMS\qxhost\Uninstall qxhost.lnk"
  RMDir "$SMPROGRAMS\qxhost"
  DeleteRegKey SHCTX "${UNINSTALL}"
  ${If} $allUsers == 0  ; what a user who has installed nothing does not have goes with the last that is in it
    RMDir "$LOCALAPPDATA\Programs"
    DeleteRegKey /ifempty HKCU "${PROGRAMS}"
  ${EndIf}
SectionEnd

Section /o "un.Settings of this user" settings
  SetShellVarContext current
  RMDir /r "$APPDATA\qxhost"
SectionEnd

Function un.onInit
  ; For whom it was installed, the registry tells.
  StrCpy $allUsers 0
  SetRegView 64
  ReadRegStr $0 HKLM "${UNINSTALL}" "InstallLocation"
  ${If} $0 == $INSTDIR
    StrCpy $allUsers 1
  ${EndIf}
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/SETTINGS" $1
  ${IfNot} ${Errors}
    SectionGetFlags ${settings} $1
    IntOp $1 $1 | ${SF_SELECTED}
    SectionSetFlags ${settings} $1
  ${EndIf}
FunctionEnd
