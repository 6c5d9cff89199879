@echo off
rem check.cmd [PROGRAMS]
rem Runs the test programs in this folder one after the other on this Windows, and leaves
rem report.txt, to be sent in. Don't use mouse and keyboard meanwhile: the tests do. A program
rem that doesn't come to an end counts as failed when you close it.
setlocal
cd /d "%~dp0"
set PASSED=0
set FAILED=0
set SKIPPED=0
set BROKEN=0
echo KRHAUL @PROJECT_VERSION@, check of the library on this machine> report.txt
ver>> report.txt
echo %PROCESSOR_ARCHITECTURE%, %NUMBER_OF_PROCESSORS% processors>> report.txt
chcp>> report.txt
set PROGRAMS=%~1
if "%PROGRAMS%"=="" set PROGRAMS=*_test.exe
for %%p in (%PROGRAMS%) do call :run %%p
set RESULT=%PASSED% passed, %FAILED% failed, %SKIPPED% skipped; programs that ended with an error: %BROKEN%
echo.>> report.txt
echo %RESULT%>> report.txt
echo %RESULT%
echo The report is in "%~dp0report.txt".
if not "%BROKEN%"=="0" exit /b 1
exit /b 0

:run
echo %1
echo.>> report.txt
echo == %1>> report.txt
"%~dp0%1" --gtest_color=no > output.txt 2>&1
set CODE=%errorlevel%
if not "%CODE%"=="0" set /a BROKEN+=1
if not "%CODE%"=="0" echo    ended with code %CODE%
echo == ended with code %CODE%>> report.txt
type output.txt >> report.txt
rem A case's last line ends with its time: [       OK ] Area.Case (12 ms)
for /f "tokens=2,6" %%a in (output.txt) do if "%%b"=="ms)" call :count %%a
del output.txt
exit /b 0

:count
if "%1"=="OK" set /a PASSED+=1
if "%1"=="FAILED" set /a FAILED+=1
if "%1"=="SKIPPED" set /a SKIPPED+=1
exit /b 0
