' Settings from a script: cscript controls.vbs. The transform must be registered; it has no name, only its identifier.
Option Explicit
Dim control
Set control = GetObject("new:{E2B7ED97-38C5-11D5-91F6-00104BDB8FF9}")
control.ResetToDefaultsEx 1
WScript.Echo "merge " & control.MergeFields & ", sensitivity " & control.AutoDeinterlaceSensitivity
control.MergeFields = False
control.AutoDeinterlaceSensitivity = 2
WScript.Echo "merge " & control.MergeFields & ", sensitivity " & control.AutoDeinterlaceSensitivity
' The settings of the user stay what they are.
control.ResetToDefaultsEx 1
control.LoadAttributes
