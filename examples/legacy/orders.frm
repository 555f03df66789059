VERSION 5.00
Object = "{6B1F9E3A-2C4D-4E8F-9A1B-5C7D3E2F1A08}#8.0#0"; "KelControls8.ocx"
Begin VB.Form frmOrders 
   BorderStyle     =   3  'Fixed Dialog
   Caption         =   "Orders"
   ClientHeight    =   6000
   ClientLeft      =   45
   ClientTop       =   330
   ClientWidth     =   7200
   BeginProperty Font 
      Name            =   "DejaVu Sans"
      Size            =   8.25
      Charset         =   0
      Weight          =   400
      Underline       =   0   'False
      Italic          =   0   'False
      Strikethrough   =   0   'False
   EndProperty
   LinkTopic       =   "Form1"
   ScaleHeight     =   6000
   ScaleWidth      =   7200
   StartUpPosition =   2  'CenterScreen
   Begin VB.Timer tmrClock 
      Interval        =   1000
      Left            =   6600
      Top             =   120
   End
   Begin VB.CommandButton cmdCancel 
      Cancel          =   -1  'True
      Caption         =   "Cancel"
      Height          =   420
      Left            =   5880
      TabIndex        =   15
      Top             =   5460
      Width           =   1200
   End
   Begin VB.CommandButton cmdSave 
      Caption         =   "&Save"
      Default         =   -1  'True
      Height          =   420
      Left            =   4560
      TabIndex        =   14
      Top             =   5460
      Width           =   1200
   End
   Begin KelControls8.KelProgressBar batchProgress 
      Height          =   300
      Left            =   120
      TabIndex        =   13
      Top             =   4980
      Width           =   6960
      ShowTime        =   -1  'True
   End
   Begin VB.Frame fraOrder 
      Caption         =   "Order"
      Height          =   3060
      Left            =   120
      TabIndex        =   3
      Top             =   1800
      Width           =   6960
      Begin KelControls8.KelText notes 
         Caption         =   "Notes"
         CaptionWidth    =   1500
         Height          =   780
         Left            =   120
         TabIndex        =   12
         Top             =   2100
         Width           =   6720
         Mandatory       =   0   'False
         MultiLine       =   -1  'True
         Text            =   $"orders.frx":0000
      End
      Begin VB.OptionButton optExpress 
         Caption         =   "Express"
         Height          =   300
         Left            =   4800
         TabIndex        =   11
         Top             =   1320
         Width           =   1800
      End
      Begin VB.OptionButton optNormal 
         Caption         =   "Normal"
         Height          =   300
         Left            =   4800
         TabIndex        =   10
         Top             =   960
         Width           =   1800
         Value           =   -1  'True
      End
      Begin VB.ComboBox cboShip 
         Height          =   315
         Left            =   4800
         TabIndex        =   9
         Top             =   540
         Width           =   1920
         List            =   "orders.frx":002B
         Style           =   2  'Dropdown List
      End
      Begin VB.Label lblShip 
         Caption         =   "Shipping"
         Height          =   255
         Left            =   4800
         Top             =   270
         Width           =   1800
      End
      Begin KelControls8.KelCheck paid 
         Caption         =   "Paid"
         Height          =   300
         Left            =   120
         TabIndex        =   8
         Top             =   1680
         Width           =   2400
      End
      Begin KelControls8.KelNumber unit_price 
         Caption         =   "Unit price"
         CaptionWidth    =   1500
         Decimals        =   2
         GroupDigits     =   -1  'True
         Height          =   300
         Left            =   120
         TabIndex        =   7
         Top             =   1320
         Width           =   3900
         Mandatory       =   0   'False
         MaxValue        =   1000000
         UpDown          =   -1  'True
         UpDownChange    =   0.5
         Value           =   12.5
      End
      Begin KelControls8.KelNumber quantity 
         Caption         =   "Quantity"
         CaptionWidth    =   1500
         Decimals        =   0
         Height          =   300
         Left            =   120
         TabIndex        =   6
         Top             =   960
         Width           =   3900
         MaxValue        =   99999
         UpDown          =   -1  'True
         Value           =   4
      End
      Begin KelControls8.KelTime delivery_time 
         Caption         =   "Delivery time"
         CaptionWidth    =   1500
         Format          =   "hh:nn"
         Height          =   300
         Left            =   120
         TabIndex        =   5
         Top             =   600
         Width           =   3300
         Mandatory       =   0   'False
      End
      Begin KelControls8.KelDate order_date 
         Caption         =   "Order date"
         CaptionWidth    =   1500
         Format          =   "dd mmm yyyy"
         Height          =   300
         Left            =   120
         TabIndex        =   4
         Top             =   240
         Width           =   3900
         Value           =   "15032026"
      End
   End
   Begin VB.Frame fraCustomer 
      Caption         =   "Customer"
      Height          =   1020
      Left            =   120
      TabIndex        =   0
      Top             =   720
      Width           =   6960
      Begin KelControls8.KelCombo customer_id 
         Caption         =   "Customer"
         CaptionWidth    =   1500
         Height          =   300
         Left            =   120
         TabIndex        =   2
         Top             =   600
         Width           =   6720
         LimitToList     =   -1  'True
         List            =   "Acme Ltd,Bolt & Co,Café Cobalt"
         ListTag         =   "1,2,3"
         Text            =   "Bolt & Co"
      End
      Begin KelControls8.KelText customer_ref 
         Caption         =   "Customer ref."
         CaptionWidth    =   1500
         Height          =   300
         Left            =   120
         TabIndex        =   1
         Top             =   240
         Width           =   6720
         MaxLength       =   20
         Text            =   "K-1042"
         ToolTipText     =   "The reference the customer quotes"
      End
   End
   Begin VB.Label lblTitle 
      Caption         =   "Order entry"
      BeginProperty Font 
         Name            =   "DejaVu Sans"
         Size            =   12
         Charset         =   0
         Weight          =   700
         Underline       =   0   'False
         Italic          =   0   'False
         Strikethrough   =   0   'False
      EndProperty
      ForeColor       =   &H00804000&
      Height          =   360
      Left            =   840
      Top             =   240
      Width           =   4200
   End
   Begin VB.PictureBox picLogo 
      BorderStyle     =   0  'None
      Height          =   480
      Left            =   120
      Top             =   120
      Width           =   480
      Picture         =   "orders.frx":0047
      TabStop         =   0   'False
   End
   Begin VB.Menu mnuFile 
      Caption         =   "&File"
      Begin VB.Menu mnuSave 
         Caption         =   "&Save"
         Shortcut        =   ^S
      End
      Begin VB.Menu mnuSep1 
         Caption         =   "-"
      End
      Begin VB.Menu mnuExit 
         Caption         =   "E&xit"
      End
   End
   Begin VB.Menu mnuRecord 
      Caption         =   "&Record"
      Begin VB.Menu mnuNew 
         Caption         =   "&New"
         Shortcut        =   ^N
      End
      Begin VB.Menu mnuDelete 
         Caption         =   "&Delete"
         Shortcut        =   {DEL}
      End
   End
End
Attribute VB_Name = "frmOrders"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
Option Explicit

Private Sub cmdSave_Click()
    If customer_ref.Valid(True) Then SaveOrder
End Sub

Private Sub cmdCancel_Click()
    Unload Me
End Sub

Private Sub mnuExit_Click()
    Unload Me
End Sub

Private Sub tmrClock_Timer()
    batchProgress.Value = batchProgress.Value + 1
End Sub
